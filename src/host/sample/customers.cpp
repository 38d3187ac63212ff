#include "host/sample/customers.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace velora::sample {
namespace {

// clang-format off
const std::vector<Customer> kCustomers{
    {"1100", "ALGOMA",    "MFG",  {"Algoma Plate & Profile Ltd.", "410 Second Line West", "", "Sault Ste. Marie", "ON", "Canada", "P6C 2K4", "7055550142", "7055550143", "Denise Lacroix"}, "purchasing@algomaplate.example", "ONTARIO", "STD", 2, "N30", "JMB"},
    {"1110", "BRANTFOOD", "FOOD", {"Brantford Foods Inc.", "88 Henry Street", "Receiving Door 4", "Brantford", "ON", "Canada", "N3S 5C6", "5195550117", "5195550118", "Owen Prentice"}, "mro@brantfordfoods.example", "ONTARIO", "OEM", 1, "N30", "JMB"},
    {"1120", "CALEDON",   "AGGR", {"Caledon Aggregates", "15200 Winston Churchill Blvd.", "", "Caledon", "ON", "Canada", "L7C 3C7", "9055550163", "", "Rick Vandermeer"}, "rick.v@caledonaggregates.example", "ECO", "STD", 0, "N30", "SKP"},
    {"1130", "KENMILL",   "MFG",  {"Kenilworth Mill Services", "1200 Burlington Street East", "Gate 3, Building 14", "Hamilton", "ON", "Canada", "L8N 3J5", "9055550128", "9055550129", "Teresa Bianchi"}, "tbianchi@kenmill.example", "ONTARIO", "OEM", 4, "N45", "SKP"},
    {"1140", "ELMIRAFED", "FOOD", {"Elmira Feed & Seed Co-operative", "35 Church Street West", "", "Elmira", "ON", "Canada", "N3B 1M7", "5195550184", "5195550185", "Amos Brubacher"}, "office@elmirafeed.example", "ONTARIO", "STD", 1, "2N10", "JMB"},
    {"1150", "FALLSBOTL", "FOOD", {"Falls Bottling Company", "6720 Kister Road", "", "Niagara Falls", "ON", "Canada", "L2E 6X9", "9055550171", "9055550172", "Maureen O'Reilly"}, "maintenance@fallsbottling.example", "ONTARIO", "STD", 3, "N30", "SKP"},
    {"1160", "GUELPHPRT", "PRT",  {"Guelph Printing & Packaging", "255 Southgate Drive", "Unit B", "Guelph", "ON", "Canada", "N1G 3M5", "5195550136", "5195550137", "Priya Raman"}, "praman@guelphprint.example", "ONTARIO", "STD", 2, "N30", "JMB"},
    {"1170", "HALTONSCH", "PUB",  {"Halton Regional School Board", "2050 Guelph Line", "Accounts Payable", "Burlington", "ON", "Canada", "L7P 5A8", "9055550190", "9055550191", "Grant Mulholland"}, "ap@haltonschools.example", "ONTARIO", "STD", 0, "N30", "SKP"},
    {"1200", "BEAUHARN",  "MFG",  {"Les Aciéries Beauharnois inc.", "725, boulevard de Melocheville", "", "Beauharnois", "QC", "Canada", "J6N 0G4", "4505550155", "4505550156", "Geneviève Thibault"}, "g.thibault@acieriesbeauharnois.example", "QUEBEC", "STD", 3, "N30", "LCT"},
    {"1210", "PAPESTRIE", "PAPR", {"Papiers de l'Estrie ltée", "1480, rue de la Manufacture", "C.P. 210", "Windsor", "QC", "Canada", "J1S 2L3", "8195550124", "8195550125", "Marc-André Gosselin"}, "achats@papiersestrie.example", "QUEBEC", "OEM", 2, "N45", "LCT"},
    {"1220", "LAITDRUM",  "FOOD", {"Laiterie Drummond", "2300, boulevard Lemire", "", "Drummondville", "QC", "Canada", "J2B 6X9", "8195550178", "", "Sylvie Beaudoin"}, "sylvie.beaudoin@laiteriedrummond.example", "QUEBEC", "STD", 1, "N30", "LCT"},
    {"1230", "MINESABIT", "MINE", {"Mines Abitibi-Ouest", "50, chemin de la Mine", "", "Rouyn-Noranda", "QC", "Canada", "J9X 5B4", "8195550149", "8195550150", "Luc Charbonneau"}, "luc.charbonneau@abitibi-ouest.example", "QUEBEC", "STD", 5, "N45", "LCT"},
    {"1240", "SCIERIESG", "WOOD", {"Scierie Saint-Georges", "9025, 25e Avenue", "", "Saint-Georges", "QC", "Canada", "G6A 1M8", "4185550133", "4185550134", "Yvon Poulin"}, "entretien@scieriesg.example", "QUEBEC", "STD", 0, "2N10", "LCT"},
    {"1300", "FRASERMIL", "WOOD", {"Fraser Valley Millworks", "33844 South Fraser Way", "", "Abbotsford", "BC", "Canada", "V2S 2C6", "6045550119", "6045550120", "Colin Yip"}, "cyip@fvmillworks.example", "BRITCOL", "STD", 2, "N30", "RWG"},
    {"1310", "KAMLOOPSC", "MINE", {"Kamloops Copper Processing", "1025 McGill Road", "Warehouse 2", "Kamloops", "BC", "Canada", "V2C 6H4", "2505550167", "2505550168", "Sandra Whitcombe"}, "stores@kamloopscopper.example", "BRITCOL", "OEM", 4, "N45", "RWG"},
    {"1320", "RICHMONDC", "FOOD", {"Richmond Cold Storage", "12011 Riverside Way", "", "Richmond", "BC", "Canada", "V6W 1K6", "6045550182", "", "Harjit Gill"}, "harjit@richmondcold.example", "BRITCOL", "STD", 1, "N30", "RWG"},
    {"1400", "BOWRIVER",  "AGGR", {"Bow River Sand & Gravel", "7400 Ogden Road SE", "", "Calgary", "AB", "Canada", "T2C 4X5", "4035550145", "4035550146", "Travis Kowalchuk"}, "parts@bowriversand.example", "ALBERTA", "STD", 1, "N30", "RWG"},
    {"1410", "NISKUOIL",  "OIL",  {"Nisku Oilfield Fabricating", "1905 8th Street", "", "Nisku", "AB", "Canada", "T9E 7Z1", "7805550110", "7805550111", "Marlene Sawchuk"}, "msawchuk@niskufab.example", "ALBERTA", "OEM", 3, "N45", "RWG"},
    {"1420", "LETHSUGAR", "FOOD", {"Lethbridge Sugar Refining", "5410 64th Street", "Stores", "Taber", "AB", "Canada", "T1G 2C4", "4035550193", "4035550194", "Doug Friesen"}, "stores@lethsugar.example", "ALBERTA", "STD", 2, "N30", "RWG"},
    {"1500", "SASKPOTAS", "MINE", {"Saskatoon Potash Services", "2720 Faithfull Avenue", "", "Saskatoon", "SK", "Canada", "S7K 5V5", "3065550126", "3065550127", "Blaine Hrynkiw"}, "bhrynkiw@saskpotash.example", "SASK", "STD", 4, "N30", "RWG"},
    {"1600", "ATLSEAFD",  "FOOD", {"Atlantic Seafood Processors", "61 Water Street", "", "Shippagan", "NB", "Canada", "E8S 1A9", "5065550188", "5065550189", "Réjean Mallet"}, "rmallet@atlseafood.example", "ATLANTIC", "STD", 1, "N30", "LCT"},
    {"2100", "BUFFALOST", "MFG",  {"Buffalo Stamping & Machine", "1755 Elmwood Avenue", "Dock 2", "Buffalo", "NY", "USA", "14207", "7165550159", "7165550160", "Carol Jankowski"}, "cjankowski@buffalostamping.example", "EXPORT", "STD", 2, "N30", "SKP"},
    {"2110", "ERIEPAPER", "PAPR", {"Erie Paperboard Corporation", "1901 East Lake Road", "", "Erie", "PA", "USA", "16511", "8145550138", "8145550139", "Dale Hutchinson"}, "dhutchinson@eriepaperboard.example", "EXPORT", "OEM", 3, "N45", "SKP"},
    {"2120", "DETTOOL",   "MFG",  {"Detroit Tool & Transfer", "18450 Sherwood Street", "", "Detroit", "MI", "USA", "48234", "3135550174", "", "Yolanda Pierce"}, "buyer@dettool.example", "EXPORT", "STD", 0, "N30", "JMB"},
    {"2130", "GRANITEST", "AGGR", {"Granite State Quarries", "310 Airport Road", "", "Concord", "NH", "USA", "03301", "6035550112", "6035550113", "Ethan Brooks"}, "ethan@graniteq.example", "EXPORT", "STD", 1, "N30", "LCT"},
    {"9000", "CASH",      "CASH", {"Counter Sales", "240 Nebo Road", "", "Hamilton", "ON", "Canada", "L8W 2E4", "9055550100", "", ""}, "counter@democo.example", "ONTARIO", "STD", 0, "COD", "HSE"},
};

const std::vector<OwnCustomer> kOwnCustomers{
    {1,  {"P-2001", "BAYFRONT", "MFG",  {"Bayfront Marine Repair", "47 Discovery Drive", "", "Hamilton", "ON", "Canada", "L8L 8B4", "9055550203", "9055550204", "Neil Ferreira"}, "neil@bayfrontmarine.example", "ONTARIO", "STD", 1, "N30", "JMB"}, false},
    {2,  {"P-2002", "CRUICK",   "FOOD", {"Cruickshank's Bakery", "12 King Street East", "", "Dundas", "ON", "Canada", "L9H 1B8", "9055550217", "", "Moira Cruickshank"}, "orders@cruickshanks.example", "ONTARIO", "STD", 0, "COD", "JMB"}, false},
    {3,  {"P-2003", "DURHAMG",  "AGRI", {"Durham Greenhouse Growers", "5180 Concession 4", "R.R. 2", "Uxbridge", "ON", "Canada", "L9P 1R2", "9055550226", "9055550227", "Pieter Hoekstra"}, "pieter@durhamgrowers.example", "ONTARIO", "STD", 2, "N30", "SKP"}, false},
    {4,  {"P-2004", "EASTAXLE", "MFG",  {"Eastern Axle Remanufacturing", "8755, rue Lafrenaie", "Porte 6", "Montréal", "QC", "Canada", "H1P 2B6", "5145550231", "5145550232", "Karine Fortin"}, "kfortin@eastaxle.example", "QUEBEC", "STD", 1, "N30", "LCT"}, false},
    {5,  {"P-2005", "FERMEROC", "AGRI", {"Ferme Rocheleau et fils", "318, rang Saint-Joseph", "", "Saint-Hyacinthe", "QC", "Canada", "J2R 2A4", "4505550248", "", "Étienne Rocheleau"}, "ferme@rocheleau.example", "QUEBEC", "STD", 0, "COD", "LCT"}, false},
    {6,  {"P-2006", "GALTFND",  "MFG",  {"Galt Foundry Works", "130 Water Street South", "", "Cambridge", "ON", "Canada", "N1R 3E2", "5195550252", "5195550253", "Ian McAllister"}, "ian@galtfoundry.example", "ONTARIO", "OEM", 3, "N30", "JMB"}, false},
    {7,  {"P-2007", "HARVESTM", "AGRI", {"Harvest Moon Organics", "2901 12th Line", "", "Creemore", "ON", "Canada", "L0M 1G0", "7055550265", "", "Jess Tremblay-Wong"}, "jess@harvestmoon.example", "ONTARIO", "STD", 0, "N30", "SKP"}, false},
    {8,  {"P-2008", "ISLANDFB", "MFG",  {"Island Fibreglass", "2150 Mills Road", "", "Sidney", "BC", "Canada", "V8L 5X4", "2505550279", "2505550280", "Stuart Langley"}, "stuart@islandfibreglass.example", "BRITCOL", "STD", 1, "N30", "RWG"}, false},
    {9,  {"P-2009", "JASPERLG", "SVC",  {"Jasper Lodge Maintenance", "101 Old Lodge Road", "", "Jasper", "AB", "Canada", "T0E 1E0", "7805550283", "", "Wendy Achtymichuk"}, "facilities@jasperlodge.example", "ALBERTA", "STD", 0, "N30", "RWG"}, false},
    {10, {"P-2010", "KEUKAWIN", "FOOD", {"Keuka Lake Winery", "7120 Route 54A", "", "Hammondsport", "NY", "USA", "14840", "6075550294", "", "Rosalind Avery"}, "cellar@keukawinery.example", "EXPORT", "STD", 0, "N30", "SKP"}, false},
    {11, {"P-2011", "LAKEHEAD", "WOOD", {"Lakehead Timber Products", "900 Central Avenue", "", "Thunder Bay", "ON", "Canada", "P7B 7B2", "8075550306", "8075550307", "Arvid Koskinen"}, "arvid@lakeheadtimber.example", "ONTARIO", "STD", 2, "N30", "JMB"}, true},
    {12, {"P-2012", "MOOSEJAW", "AGRI", {"Moose Jaw Grain Handling", "455 High Street West", "", "Moose Jaw", "SK", "Canada", "S6H 1T3", "3065550318", "3065550319", "Cheryl Bachman"}, "cbachman@mjgrain.example", "SASK", "STD", 1, "N30", "RWG"}, false},
    {13, {"P-2013", "NORTHBAY", "MINE", {"North Bay Drill Supply", "1811 Seymour Street", "", "North Bay", "ON", "Canada", "P1A 0C7", "7055550324", "", "Gaston Levesque"}, "gaston@nbdrill.example", "ONTARIO", "STD", 1, "N30", "JMB"}, true},
};

const std::vector<ShipToLocation> kShipToLocations{
    {"1110", "PLANT2", {"Brantford Foods, Plant 2", "21 Adams Boulevard", "", "Brantford", "ON", "Canada", "N3S 7V8", "5195550119", "", "Ray Stathakis"}, "Deliveries 7:00 to 14:00 only. Steel toe boots required."},
    {"1130", "COKE",   {"Kenilworth Mill Services, Coke Plant", "1200 Burlington Street East", "Gate 9", "Hamilton", "ON", "Canada", "L8N 3J5", "9055550130", "", "Stores window"}, "Call ahead for a gate pass."},
    {"1200", "QUAI",   {"Aciéries Beauharnois, quai de réception", "725, boulevard de Melocheville", "Entrée C", "Beauharnois", "QC", "Canada", "J6N 0G4", "4505550157", "4505550158", "Réception"}, "Livraison du lundi au jeudi, 8 h à 15 h. Chariot élévateur sur place."},
    {"1230", "SITE4",  {"Mines Abitibi-Ouest, site 4", "Kilomètre 38, route 117", "", "Malartic", "QC", "Canada", "J0Y 1Z0", "8195550151", "", "Magasin"}, "Radio channel 6 at the gate."},
    {"1310", "PIT",    {"Kamloops Copper, Pit Stores", "Highland Valley Road, km 12", "", "Logan Lake", "BC", "Canada", "V0K 1W0", "2505550169", "", "Pit stores"}, ""},
    {"1410", "YARD",   {"Nisku Oilfield, Leduc Yard", "6502 45th Street", "", "Leduc", "AB", "Canada", "T9E 7C9", "7805550114", "", "Yard foreman"}, "Off-load at the north crane."},
    {"2110", "DOCK7",  {"Erie Paperboard, Dock 7", "1901 East Lake Road", "Dock 7", "Erie", "PA", "USA", "16511", "8145550140", "", "Receiving"}, "Customs broker: Lakeshore Brokerage, file 20714."},
};
// clang-format on

}  // namespace

const std::vector<Customer>& customers()
{
    return kCustomers;
}

const std::vector<OwnCustomer>& own_customers()
{
    return kOwnCustomers;
}

const std::vector<ShipToLocation>& ship_to_locations()
{
    return kShipToLocations;
}

const Customer& find_customer(std::string_view number)
{
    const auto found = std::ranges::find(kCustomers, number, &Customer::number);
    if (found == kCustomers.end()) throw std::out_of_range("no sample customer " + std::string(number));
    return *found;
}

}  // namespace velora::sample
