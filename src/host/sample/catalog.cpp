#include "host/sample/catalog.h"

#include <algorithm>
#include <array>
#include <span>
#include <stdexcept>

#include "values/text.h"

namespace velora::sample {
namespace {

struct Variant {
    std::string_view code;
    std::string_view size;  ///< takes the place of "{}" in the family's text
    int64_t price;          ///< cents
    double weight;          ///< kilograms
};

struct Family {
    std::string_view prefix;
    std::string_view category;
    std::string_view commodity;
    std::string_view text;
    std::string_view stock_unit;
    std::string_view pack_unit;
    int pack_factor;
    int cost_percent;
    std::span<const Variant> variants;
};

// clang-format off
constexpr auto kBallBearings = std::to_array<Variant>({
    {"6203-2RS", "17 x 40 x 12 mm",  1185, 0.07}, {"6204-2RS", "20 x 47 x 14 mm",  1342, 0.11},
    {"6205-2RS", "25 x 52 x 15 mm",  1498, 0.13}, {"6206-2RS", "30 x 62 x 16 mm",  1976, 0.20},
    {"6207-2RS", "35 x 72 x 17 mm",  2644, 0.29}, {"6208-2RS", "40 x 80 x 18 mm",  3120, 0.37},
    {"6209-2RS", "45 x 85 x 19 mm",  3615, 0.41}, {"6210-2RS", "50 x 90 x 20 mm",  4090, 0.46},
    {"6308-2RS", "40 x 90 x 23 mm",  4875, 0.63}, {"6310-2RS", "50 x 110 x 27 mm", 8140, 1.07}});

constexpr auto kPillowBlocks = std::to_array<Variant>({
    {"UCP204-12", "3/4 in",     2980, 0.62}, {"UCP205-16", "1 in",       3345, 0.74},
    {"UCP206-20", "1 1/4 in",   4210, 1.18}, {"UCP207-23", "1 7/16 in",  5365, 1.55},
    {"UCP208-24", "1 1/2 in",   6120, 1.84}, {"UCP209-28", "1 3/4 in",   6890, 2.10},
    {"UCP210-31", "1 15/16 in", 7745, 2.63}, {"UCP211-35", "2 3/16 in",  9980, 3.35}});

constexpr auto kVBelts = std::to_array<Variant>({
    {"A42", "1/2 in x 44.3 in", 1420, 0.12}, {"A55", "1/2 in x 57.3 in", 1765, 0.16},
    {"B46", "21/32 in x 48.9 in", 2210, 0.24}, {"B60", "21/32 in x 62.9 in", 2695, 0.31},
    {"B85", "21/32 in x 87.9 in", 3540, 0.44}, {"5VX630", "5/8 in x 63.0 in", 5890, 0.49},
    {"5VX800", "5/8 in x 80.0 in", 7415, 0.63}, {"5VX1000", "5/8 in x 100.0 in", 9240, 0.79}});

constexpr auto kRollerChain = std::to_array<Variant>({
    {"40-1R", "1/2 in pitch, single strand", 6480, 1.9}, {"50-1R", "5/8 in pitch, single strand", 8125, 3.1},
    {"60-1R", "3/4 in pitch, single strand", 10960, 4.5}, {"80-1R", "1 in pitch, single strand", 18240, 7.8},
    {"60-2R", "3/4 in pitch, double strand", 23875, 8.9}, {"80-2R", "1 in pitch, double strand", 39610, 15.6}});

constexpr auto kSprockets = std::to_array<Variant>({
    {"40B15H", "15 teeth, 5/8 in bore", 2415, 0.35}, {"40B24H", "24 teeth, 3/4 in bore", 3620, 0.82},
    {"50B18H", "18 teeth, 3/4 in bore", 3985, 0.95}, {"50B30H", "30 teeth, 1 in bore", 6240, 2.10},
    {"60B20H", "20 teeth, 1 in bore", 5875, 1.72}, {"60B36H", "36 teeth, 1 1/4 in bore", 11430, 4.95},
    {"80B19H", "19 teeth, 1 1/4 in bore", 9360, 3.60}, {"80B40H", "40 teeth, 1 1/2 in bore", 24875, 14.8}});

constexpr auto kMotors = std::to_array<Variant>({
    {"1.0HP-143T", "1 HP, 1800 rpm, frame 143T", 42900, 18.6}, {"2.0HP-145T", "2 HP, 1800 rpm, frame 145T", 49850, 22.7},
    {"3.0HP-182T", "3 HP, 1800 rpm, frame 182T", 61275, 35.4}, {"5.0HP-184T", "5 HP, 1800 rpm, frame 184T", 74600, 43.1},
    {"7.5HP-213T", "7 1/2 HP, 1800 rpm, frame 213T", 102350, 64.9}, {"10HP-215T", "10 HP, 1800 rpm, frame 215T", 121800, 77.1},
    {"20HP-256T", "20 HP, 1800 rpm, frame 256T", 214975, 134.0}});

constexpr auto kReducers = std::to_array<Variant>({
    {"W133-10", "1.33 in centre, ratio 10:1", 31240, 6.4}, {"W175-20", "1.75 in centre, ratio 20:1", 42665, 11.3},
    {"W206-30", "2.06 in centre, ratio 30:1", 51890, 15.0}, {"W262-40", "2.62 in centre, ratio 40:1", 73415, 26.8},
    {"W325-50", "3.25 in centre, ratio 50:1", 108990, 44.0}});

constexpr auto kHydraulicHose = std::to_array<Variant>({
    {"R2-04", "1/4 in", 845, 0.39}, {"R2-06", "3/8 in", 1095, 0.54}, {"R2-08", "1/2 in", 1280, 0.66},
    {"R2-12", "3/4 in", 1875, 0.98}, {"R2-16", "1 in", 2640, 1.42}});

constexpr auto kHydraulicFittings = std::to_array<Variant>({
    {"4JIC-4NPT", "7/16-20 JIC male to 1/4 in NPT male", 412, 0.04}, {"6JIC-6NPT", "9/16-18 JIC male to 3/8 in NPT male", 538, 0.06},
    {"8JIC-8NPT", "3/4-16 JIC male to 1/2 in NPT male", 715, 0.09}, {"12JIC-12NPT", "1 1/16-12 JIC male to 3/4 in NPT male", 1298, 0.18},
    {"16JIC-16NPT", "1 5/16-12 JIC male to 1 in NPT male", 2065, 0.31}, {"8JIC-90", "3/4-16 JIC swivel elbow, 90 degrees", 1640, 0.17}});

constexpr auto kCylinders = std::to_array<Variant>({
    {"NC32-050", "32 mm bore, 50 mm stroke", 8925, 0.62}, {"NC40-100", "40 mm bore, 100 mm stroke", 11870, 1.04},
    {"NC50-160", "50 mm bore, 160 mm stroke", 16340, 1.78}, {"NC63-200", "63 mm bore, 200 mm stroke", 21985, 2.70},
    {"NC80-250", "80 mm bore, 250 mm stroke", 31460, 4.61}});

constexpr auto kValves = std::to_array<Variant>({
    {"5/2-1/8", "5/2 way, 1/8 in ports, 24 V DC", 7860, 0.21}, {"5/2-1/4", "5/2 way, 1/4 in ports, 24 V DC", 9145, 0.29},
    {"5/3-1/4", "5/3 way closed centre, 1/4 in ports, 24 V DC", 13980, 0.41}, {"3/2-1/4", "3/2 way, 1/4 in ports, 24 V DC", 6725, 0.24}});

constexpr auto kBolts = std::to_array<Variant>({
    {"M8X25", "M8 x 1.25 x 25 mm", 31, 0.018}, {"M8X40", "M8 x 1.25 x 40 mm", 38, 0.023}, {"M10X30", "M10 x 1.5 x 30 mm", 56, 0.033},
    {"M10X50", "M10 x 1.5 x 50 mm", 71, 0.044}, {"M12X40", "M12 x 1.75 x 40 mm", 92, 0.058}, {"M12X60", "M12 x 1.75 x 60 mm", 118, 0.074},
    {"M16X60", "M16 x 2.0 x 60 mm", 214, 0.140}, {"M20X80", "M20 x 2.5 x 80 mm", 418, 0.280}});

constexpr auto kLubricants = std::to_array<Variant>({
    {"EP2-400G", "EP 2 lithium complex grease, 400 g cartridge", 745, 0.45}, {"EP2-17KG", "EP 2 lithium complex grease, 17 kg pail", 21490, 17.9},
    {"ISO46-20L", "ISO VG 46 anti-wear hydraulic oil, 20 L pail", 9985, 18.1}, {"ISO46-205L", "ISO VG 46 anti-wear hydraulic oil, 205 L drum", 84950, 184.0},
    {"GEAR220-20L", "ISO VG 220 synthetic gear oil, 20 L pail", 28640, 18.4}, {"CHAIN-500ML", "Penetrating chain and cable lubricant, 500 mL aerosol", 1385, 0.52},
    {"FOOD-H1-400G", "Food grade H1 calcium sulfonate grease, 400 g cartridge", 1960, 0.45}, {"COOL-20L", "Semi-synthetic cutting coolant concentrate, 20 L pail", 18975, 20.2}});

constexpr auto kSafety = std::to_array<Variant>({
    {"GLV-NIT-L", "Nitrile coated work gloves, large", 398, 0.06}, {"GLV-CUT-L", "Cut resistant gloves, ANSI level A4, large", 1275, 0.08},
    {"GLS-CLR", "Safety glasses, clear anti-fog lens, CSA Z94.3", 685, 0.03}, {"EAR-PLUG", "Foam ear plugs, corded, NRR 32 dB", 42, 0.004},
    {"HAT-TYPE1", "Hard hat, type 1 class E, ratchet suspension", 2460, 0.38}, {"VEST-HV-XL", "High visibility vest, class 2, extra large", 1895, 0.22}});

constexpr auto kDrives = std::to_array<Variant>({
    {"VFD-1HP-480", "1 HP, 480 V three phase", 38950, 1.6}, {"VFD-3HP-480", "3 HP, 480 V three phase", 51240, 2.1},
    {"VFD-5HP-480", "5 HP, 480 V three phase", 64875, 2.9}, {"VFD-10HP-480", "10 HP, 480 V three phase", 98460, 4.8},
    {"VFD-20HP-480", "20 HP, 480 V three phase", 159900, 8.7}});

constexpr auto kSensors = std::to_array<Variant>({
    {"PRX-M12-NPN", "inductive, M12, 4 mm range, NPN normally open", 4985, 0.06}, {"PRX-M18-PNP", "inductive, M18, 8 mm range, PNP normally open", 5460, 0.11},
    {"PRX-M30-PNP", "inductive, M30, 15 mm range, PNP normally open", 6875, 0.20}, {"PHO-RR-4M", "photoelectric, retroreflective, 4 m range", 9840, 0.09},
    {"PHO-TB-15M", "photoelectric, through beam pair, 15 m range", 14265, 0.17}});

constexpr auto kCouplings = std::to_array<Variant>({
    {"L090-7/8", "size L090, 7/8 in bore", 1895, 0.36}, {"L095-1", "size L095, 1 in bore", 2360, 0.58}, {"L100-1-1/8", "size L100, 1 1/8 in bore", 3415, 1.05},
    {"L110-1-3/8", "size L110, 1 3/8 in bore", 5280, 1.92}, {"L150-1-5/8", "size L150, 1 5/8 in bore", 7945, 3.10}});

constexpr auto kConveyor = std::to_array<Variant>({
    {"ROL-19-12", "1.9 in diameter, 12 in between frames", 1485, 0.95}, {"ROL-19-18", "1.9 in diameter, 18 in between frames", 1740, 1.28},
    {"ROL-19-24", "1.9 in diameter, 24 in between frames", 1995, 1.61}, {"ROL-25-24", "2.5 in diameter, 24 in between frames", 3260, 2.84}});

constexpr auto kFilters = std::to_array<Variant>({
    {"HF10-SPIN", "spin-on hydraulic element, 10 micron", 4630, 0.72}, {"HF25-SPIN", "spin-on hydraulic element, 25 micron", 3985, 0.71},
    {"RF-TANK-10", "return line tank element, 10 micron", 9870, 1.10}, {"AF-1/2-5U", "compressed air filter, 1/2 in ports, 5 micron", 7425, 0.66}});

constexpr auto kFamilies = std::to_array<Family>({
    {"BRG", "BRG", "8482.10", "Deep groove ball bearing, two rubber seals, C3 clearance, {}",         "EA", "BOX",  10, 58, kBallBearings},
    {"PBL", "BRG", "8483.20", "Pillow block bearing, cast iron, set screw lock, {} shaft",            "EA", "",      1, 56, kPillowBlocks},
    {"VBT", "PTR", "4010.31", "V-belt, oil and heat resistant, {} outside length",                    "EA", "",      1, 52, kVBelts},
    {"CHN", "PTR", "7315.11", "Roller chain, riveted, 10 ft box, {}",                                 "BX", "CS",   10, 61, kRollerChain},
    {"SPR", "PTR", "8483.90", "Sprocket, hardened teeth, finished bore with keyway, {}",              "EA", "",      1, 57, kSprockets},
    {"MTR", "ELE", "8501.52", "Electric motor, TEFC, premium efficiency, three phase 230/460 V, {}",  "EA", "",      1, 68, kMotors},
    {"RED", "PTR", "8483.40", "Worm gear reducer, C-face input, hollow output, {}",                   "EA", "",      1, 66, kReducers},
    {"HOS", "HYD", "4009.21", "Hydraulic hose, SAE 100R2AT two wire braid, {} inside diameter",       "M",  "ROLL", 50, 49, kHydraulicHose},
    {"FIT", "HYD", "7307.92", "Hydraulic adapter, zinc plated steel, {}",                             "EA", "BAG",  25, 47, kHydraulicFittings},
    {"CYL", "PNE", "8412.31", "Pneumatic cylinder, ISO 15552, double acting, magnetic piston, {}",    "EA", "",      1, 60, kCylinders},
    {"VLV", "PNE", "8481.20", "Solenoid valve, spring return, indicator light connector, {}",         "EA", "",      1, 59, kValves},
    {"BLT", "FST", "7318.15", "Hex cap screw, class 8.8, zinc plated, {}",                            "EA", "C",   100, 45, kBolts},
    {"LUB", "LUB", "2710.19", "{}",                                                                   "EA", "CS",   12, 64, kLubricants},
    {"SAF", "SAF", "6116.10", "{}",                                                                   "EA", "DZ",   12, 50, kSafety},
    {"DRV", "ELE", "8504.40", "Variable frequency drive, sensorless vector, built-in keypad, {}",     "EA", "",      1, 69, kDrives},
    {"SNS", "ELE", "8536.50", "Sensor, 10 to 30 V DC, M12 connector, {}",                             "EA", "",      1, 55, kSensors},
    {"CPL", "PTR", "8483.60", "Jaw coupling hub, sintered iron, {}",                                  "EA", "",      1, 54, kCouplings},
    {"CNV", "CNV", "8431.39", "Gravity conveyor roller, galvanized, spring axle, {}",                 "EA", "CTN",  20, 53, kConveyor},
    {"FLT", "HYD", "8421.29", "Filter element, {}",                                                   "EA", "CS",   12, 51, kFilters},
});

constexpr auto kSpecials = std::to_array<Variant>({
    {"HPU-5GAL-3HP", "Hydraulic power unit, 5 US gal steel reservoir with sight gauge and filler breather, 3 HP three phase motor, "
                     "fixed displacement gear pump 2.8 gpm at 1500 psi, relief valve, return filter and D03 manifold, "
                     "factory tested, painted grey", 398500, 88.0},
    {"PNL-VFD-10HP", "Drive panel, NEMA 12 enclosure 30 x 24 x 10 in, 10 HP variable frequency drive with line reactor, fused disconnect, "
                     "door mounted keypad and pilot devices, CSA labelled, drawings supplied", 286400, 61.5},
    {"LUB-AUTO-12PT", "Automatic lubrication system, 12 points, electric 24 V DC pump with 2 kg clear reservoir, progressive divider block, "
                      "low level switch, 30 m of tubing and fittings", 174900, 16.2}});

const std::vector<OwnItem> kOwnItems{
    {1, "VL-1001", "Motor and reducer assembly, coupled, aligned and test run on a common base plate", "ASM", "EA", 124500, 96.0},
    {2, "VL-1002", "Custom hydraulic manifold, aluminium, four stations D03, ported to customer drawing", "ASM", "EA", 68900, 7.4},
    {3, "VL-1003", "Hose assembly, cut to length, crimped both ends, pressure tested and tagged", "ASM", "EA", 6450, 1.8},
    {4, "VL-1004", "Conveyor section, gravity, 10 ft x 24 in between frames, 3 in roller centres", "ASM", "EA", 72500, 58.0},
    {5, "VL-1005", "Pneumatic control panel, six valves, filter regulator and pressure switch", "ASM", "EA", 189000, 24.5},
    {6, "VL-1006", "Machined shaft, 1045 steel, turned and keyed to customer drawing", "MCH", "EA", 21400, 5.2},
    {7, "VL-1007", "Rebore and keyway of a stock sprocket or sheave", "MCH", "EA", 4800, 0},
    {8, "VL-1008", "Split taper bushing, rebored to metric size", "MCH", "EA", 3950, 0.6},
    {9, "VL-1009", "Bearing housing, line bored and sleeved", "MCH", "EA", 32500, 11.0},
    {10, "VL-1010", "Base plate, fabricated steel, drilled and powder coated", "FAB", "EA", 28700, 31.0},
    {11, "VL-1011", "Belt guard, expanded metal, safety yellow", "FAB", "EA", 19600, 9.5},
    {12, "VL-1012", "Chain guard, sheet steel, hinged for service", "FAB", "EA", 17800, 8.2},
    {13, "VL-1013", "Drip tray, stainless steel 304, 600 x 400 mm", "FAB", "EA", 14200, 4.4},
    {14, "VL-1014", "Field laser alignment, one coupled drive", "SRV", "HR", 13500, 0},
    {15, "VL-1015", "Vibration survey, up to ten machines, with report", "SRV", "EA", 98000, 0},
    {16, "VL-1016", "Installation labour, certified millwright", "SRV", "HR", 11800, 0},
    {17, "VL-1017", "Overtime premium, millwright", "SRV", "HR", 5900, 0},
    {18, "VL-1018", "Hydraulic fluid analysis, laboratory report within five days", "SRV", "EA", 8900, 0},
    {19, "VL-1019", "Gear reducer rebuild, bearings and seals included", "SRV", "EA", 64500, 0},
    {20, "VL-1020", "Motor rewind, random wound, up to 10 HP", "SRV", "EA", 79500, 0},
    {21, "VL-1021", "Drive start-up and parameter setting on site", "SRV", "EA", 58000, 0},
    {22, "VL-1022", "Lubrication training, half day, up to twelve people", "SRV", "EA", 120000, 0},
    {23, "VL-1023", "Crating for export, heat treated wood, per cubic metre", "PKG", "M3", 24500, 0},
    {24, "VL-1024", "Kit of spare seals and wear parts, labelled to customer stock number", "PKG", "KIT", 33400, 2.3},
};

const std::vector<Category> kCategories{
    {"BRG", "Bearings"},          {"PTR", "Power transmission"}, {"ELE", "Motors and electrical"}, {"HYD", "Hydraulics"},
    {"PNE", "Pneumatics"},        {"FST", "Fasteners"},          {"LUB", "Lubricants and fluids"}, {"SAF", "Safety supplies"},
    {"CNV", "Conveyor parts"},    {"SYS", "Engineered systems"}, {"ASM", "Assemblies"},            {"MCH", "Machining"},
    {"FAB", "Fabrication"},       {"SRV", "Field service"},      {"PKG", "Packaging and kits"},
};
// clang-format on

constexpr std::string_view kSeparators = "-/.()*#\\";

std::string without_separators(std::string_view formatted)
{
    std::string number;
    std::ranges::copy_if(formatted, std::back_inserter(number),
                         [](char c) { return kSeparators.find(c) == std::string_view::npos; });
    return number;
}

Item make_item(const Family& family, const Variant& variant, size_t position)
{
    Item item;
    item.formatted = std::string(family.prefix) + "-" + std::string(variant.code);
    item.number = without_separators(item.formatted);
    item.description = replaced(family.text, "{}", variant.size);
    item.category = family.category;
    item.commodity = family.commodity;
    item.stock_unit = family.stock_unit;
    item.pack_unit = family.pack_unit;
    item.pack_factor = family.pack_factor;
    item.price = variant.price;
    item.cost = variant.price * family.cost_percent / 100;
    item.weight = variant.weight;
    item.kind = static_cast<int>(position % 8);
    item.picking_sequence = std::to_string(100 + position * 7);
    return item;
}

}  // namespace

bool Item::on_oem_list() const
{
    return (price + static_cast<int64_t>(number.size())) % 5 != 0;
}

bool Item::priced_by_pack() const
{
    return pack_unit == "C" || pack_unit == "ROLL";
}

std::vector<Item> items()
{
    static constexpr Family kSystems{"SYS", "SYS", "8479.89", "{}", "EA", "", 1, 65, kSpecials};
    std::vector<Item> all;
    for (const Family& family : kFamilies) {
        for (const Variant& variant : family.variants) all.push_back(make_item(family, variant, all.size()));
    }
    for (const Variant& variant : kSystems.variants) all.push_back(make_item(kSystems, variant, all.size()));
    return all;
}

const std::vector<OwnItem>& own_items()
{
    return kOwnItems;
}

const std::vector<Category>& categories()
{
    return kCategories;
}

const Item& find_item(const std::vector<Item>& all, std::string_view formatted)
{
    const auto found = std::ranges::find(all, formatted, &Item::formatted);
    if (found == all.end()) throw std::out_of_range("no sample item " + std::string(formatted));
    return *found;
}

int64_t list_price(const Item& item, std::string_view price_list, std::string_view currency)
{
    int64_t price = item.price * (item.priced_by_pack() ? item.pack_factor : 1);
    if (price_list == "OEM") price = price * 91 / 100;
    if (currency == "USD") price = price * 74 / 100;
    return price;
}

}  // namespace velora::sample
