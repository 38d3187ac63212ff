#include "host/sample/quote_rows.h"

#include "host/sample/sample_company.h"
#include "host/sample/tax_groups.h"

namespace velora::sample {
namespace {

Row saved_address(std::string_view prefix, const Address& address)
{
    const std::string p(prefix);
    return {{p + "Name", address.name},
            {p + "Address1", address.line1},
            {p + "Address2", address.line2},
            {p + "Address3", ""},
            {p + "Address4", ""},
            {p + "City", address.city},
            {p + "ProvState", address.province},
            {p + "Country", address.country},
            {p + "PCZip", address.postal_code},
            {p + "Phone", address.phone},
            {p + "Fax", address.fax},
            {p + "Contact", address.contact}};
}

Row who(const Quote& quote)
{
    const Customer& customer = *quote.customer;
    return {{"CustFrom", quote.own_customer == 0 ? 0 : 1},
            {"CustomerID", quote.own_customer},
            {"AccPacID", quote.own_customer == 0 ? customer.number : "vl"},
            {"CustName", customer.address.name},
            {"CustContact", customer.address.contact},
            {"quEmail", customer.email}};
}

Row when(const Quote& quote)
{
    const DateTime modified = quote.transferred.value_or(days_after(quote.entered, quote.id % 4));
    return {{"quDateEnter", quote.entered},
            {"quDateShip", days_after(quote.entered, 21)},
            {"quDateExpire", days_after(quote.entered, quote.valid_days)},
            {"quDateTransfer", quote.transferred ? Value(*quote.transferred) : Value()},
            {"quUserEnter", quote.user},
            {"quCompany", kCompanyId},
            {"quDateModify", modified},
            {"quUserModify", kUser},
            {"quACCPACNum", quote.transferred ? "ORD" + std::to_string(880000 + quote.id) : ""}};
}

Row what(const Quote& quote)
{
    const bool north = quote.ship_via == "NORTHX";
    const bool own_truck = quote.ship_via == "OURTRK";
    return {{"QuoteStatusID", quote.status},
            {"QuoteTypeID", quote.type},
            {"QuoteConfidID", quote.confidence},
            {"quPONumber", quote.purchase_order},
            {"quLocation", "10"},
            {"quDesc", quote.description},
            {"quReference", quote.reference},
            {"quLines", static_cast<int32_t>(quote.lines.size())},
            {"quNotes", quote.notes},
            {"quShipToLoc", quote.ship_to},
            {"quShipVia", quote.ship_via},
            {"quShipViaDesc", own_truck ? "Our truck"
                              : north   ? "Northern Express"
                                        : "Customer pick-up"},
            {"quFOBPoint", quote.fob},
            {"quRevision", 0},
            {"quOriginal", 0},
            {"quOnHold", quote.on_hold},
            {"quOverCredit", 0},
            {"quCrApprLimit", quote.on_hold ? 5000.0 : 0.0},
            {"quCrApproval", ""},
            {"quCrApprPwd", ""},
            {"quPrPickSlip", quote.transferred && quote.id % 3 == 0},
            {"quPrConfirm", quote.transferred && quote.id % 2 == 0},
            {"quComplete", quote.complete},
            {"quBOfor", quote.back_order_for}};
}

Row on_what_terms(const Quote& quote)
{
    const Customer& customer = *quote.customer;
    const TaxGroup& group = tax_group(customer.tax_group);
    const bool foreign = customer.currency() == "USD";
    const bool shared = !quote.second_salesperson.empty();
    Row row{{"quCustomerType", customer.discount_level},
            {"quPriceList", customer.price_list},
            {"quTaxGroup", customer.tax_group},
            {"quTermsCode", customer.terms},
            {"quCurCode", customer.currency()},
            {"quHomeCurr", "CAD"},
            {"quSourceCurr", customer.currency()},
            {"quRateType", foreign ? "SP" : ""},
            {"quRateDate", quote.entered},
            {"quRateEx", foreign ? 1.3625 : 1.0}};
    add_numbered(row, "quTaxClass", [&](int slot) { return group.authorities.at(slot).empty() ? "" : "1"; });
    add_numbered(row, "quRegNumber", [&](int slot) {
        if (foreign || group.authorities.at(slot).empty()) return std::string();
        return std::to_string(80412 + slot * 1117) + " 7751 RT" +
               std::string(customer.number.substr(customer.number.size() - 4));
    });
    add_numbered(row, "quSalesperson", [&](int slot) {
        return slot == 0 ? std::string(customer.salesperson) : slot == 1 ? quote.second_salesperson : std::string();
    });
    add_numbered(row, "quPercentSS", [&](int slot) {
        return slot == 0 ? (shared ? 60.0 : 100.0) : slot == 1 && shared ? 40.0 : 0.0;
    });
    return row;
}

}  // namespace

void QuoteRows::write(const Quote& quote)
{
    write_addresses(quote);
    Row row{{"QuoteID", quote.id},
            {"QuoteNumber", quote.number()},
            {"BillToID", quote.saved_bill_to ? bill_to_ : 0},
            {"ShipToID", quote.saved_ship_to ? ship_to_ : 0}};
    for (const Row& part : {who(quote), what(quote), when(quote), on_what_terms(quote)}) append(row, part);
    out_.insert("Quote", row);
    int number = 0;
    for (const Line& line : quote.lines) write_line(quote, line, ++number);
    write_charges(quote);
    write_loss(quote);
}

void QuoteRows::write_addresses(const Quote& quote)
{
    if (quote.saved_bill_to) {
        Row row{{"BillToID", ++bill_to_}};
        append(row, saved_address("bt", quote.customer->address));
        out_.insert("BillTo", row);
    }
    if (quote.saved_ship_to) {
        Row row{{"ShipToID", ++ship_to_}, {"stCode", ""}, {"stInstructions", "Ring the bell at the side door."}};
        append(row, saved_address("st", quote.customer->address));
        out_.insert("ShipTo", row);
    }
}

void QuoteRows::write_line(const Quote& quote, const Line& line, int number)
{
    const TaxGroup& group = tax_group(quote.customer->tax_group);
    const bool is_item = line.kind == kItemLine;
    const bool remarks = !line.comment.empty() || !line.instruction.empty();
    Row row{{"QuoteID", quote.id},
            {"Line", number},
            {"ItemID", line.own_id},
            {"APItem", line.number},
            {"deIType", is_item ? line.item_kind : 0},
            {"deDType", line.kind},
            {"deDesc", is_item ? line.description : ""},
            {"deComment", is_item ? "" : line.description},
            {"deQuantity", line.quantity},
            {"deQtyTransfer", line.transferred},
            {"deUofM", line.unit},
            {"deConvFactor", line.factor},
            {"deQuotedPrice", amount(line.price)},
            {"dePriceList", line.price_list},
            {"deDiscount", amount(line.discount())},
            {"deDiscPer", line.discount_percent},
            {"deCost", amount(line.cost)},
            {"deLocation", line.location},
            {"deCategory", line.category},
            {"deCustItem", line.customer_item},
            {"deShipDate", is_item ? Value(days_after(quote.entered, 14 + number % 3 * 7)) : Value()},
            {"deLeadTime", line.lead_time},
            {"deWeight", line.weight},
            {"dePickingSeq", line.picking_sequence},
            {"deHasItemCom", remarks}};
    add_numbered(row, "deTaxClass",
                 [&](int slot) { return is_item && !group.authorities.at(slot).empty() ? "1" : ""; });
    add_numbered(row, "deTaxIncl", [&](int slot) {
        if (!is_item || group.authorities.at(slot).empty()) return "";
        const bool fee = group.authorities.at(slot) == "ECOFEE" && line.category == "LUB";
        return line.tax_included || fee ? "1" : "0";
    });
    out_.insert("Details", row);
    write_remarks(quote, line, number);
}

void QuoteRows::write_remarks(const Quote& quote, const Line& line, int number)
{
    const auto remark = [&](int type, const std::string& text) {
        if (text.empty()) return;
        out_.insert("CommIns", {{"QuoteID", quote.id}, {"Line", number}, {"CoInType", type}, {"CommIns", text}});
    };
    remark(1, line.comment);
    remark(2, line.instruction);
}

void QuoteRows::write_charges(const Quote& quote)
{
    const TaxGroup& group = tax_group(quote.customer->tax_group);
    int number = 0;
    for (const Charge& charge : quote.charges) {
        Row row{{"ChargeID", ++charge_},     {"QuoteID", quote.id},          {"Line", ++number},
                {"ChargeCode", charge.code}, {"ChDesc", charge.description}, {"Amount", amount(charge.amount)}};
        add_numbered(row, "TaxClass", [&](int slot) { return group.authorities.at(slot).empty() ? "" : "1"; });
        add_numbered(row, "TaxIncl", [&](int slot) { return group.authorities.at(slot).empty() ? "" : "0"; });
        out_.insert("DMiscCharge", row);
    }
}

void QuoteRows::write_loss(const Quote& quote)
{
    if (!quote.loss) return;
    out_.insert("LostDetail", {{"QuoteID", quote.id},
                               {"ReasonID", quote.loss->reason},
                               {"ldDateLost", days_after(quote.entered, 18)},
                               {"ldUserLost", quote.user},
                               {"ldConfirm", quote.customer->address.contact},
                               {"ldPhone", quote.customer->address.phone},
                               {"ldRefNumber", quote.loss->reference},
                               {"ldNotes", quote.loss->notes}});
}

}  // namespace velora::sample
