#include "values/fault.h"

#include <array>
#include <new>
#include <string_view>

namespace velora {

namespace {

struct FaultText {
    int32_t number;
    std::string_view text;
};

constexpr auto kTexts = std::to_array<FaultText>({
    {fault::kInvalidCall, "Invalid procedure call or argument"},
    {fault::kOverflow, "Overflow"},
    {fault::kOutOfMemory, "Out of memory"},
    {fault::kSubscript, "Subscript out of range"},
    {fault::kArrayFixed, "This array is fixed or temporarily locked"},
    {fault::kDivisionByZero, "Division by zero"},
    {fault::kTypeMismatch, "Type mismatch"},
    {fault::kFileNotFound, "File not found"},
    {fault::kPathAccess, "Path/File access error"},
    {fault::kObjectNotSet, "Object variable or With block variable not set"},
    {fault::kInvalidPattern, "Invalid pattern string"},
    {fault::kNull, "Invalid use of Null"},
    {fault::kNoSuchMember, "Control array element does not exist"},
    {fault::kPropertyValue, "Invalid property value"},
    {fault::kCannotCreate, "ActiveX component can't create object"},
    {fault::kAutomation, "Automation error"},
    {fault::kNoCurrentRow,
     "Either BOF or EOF is True, or the current record has been deleted. "
     "Requested operation requires a current record."},
    {fault::kNoSuchColumn, "Item cannot be found in the collection corresponding to the requested name or ordinal."},
    {fault::kClosedObject, "Operation is not allowed when the object is closed."},
    {fault::kReportFile, "Invalid file name."},
    {fault::kCancelled, "Operation cancelled by user."},
    {fault::kInvalidRow, "Invalid Row value"},
    {fault::kNoSuchElement, "Element not found"},
});

}  // namespace

Fault::Fault(int32_t number, const std::string& description, std::string where)
    : std::runtime_error(description), number_(number), where_(std::move(where))
{
}

Fault fault::of(int32_t number, std::string where)
{
    for (const auto& known : kTexts) {
        if (known.number == number) return {number, std::string(known.text), std::move(where)};
    }
    return {number, "Application-defined or object-defined error", std::move(where)};
}

Fault fault::of(const std::exception& caught)
{
    if (const auto* known = dynamic_cast<const Fault*>(&caught)) return *known;
    if (dynamic_cast<const std::bad_alloc*>(&caught) != nullptr) return of(kOutOfMemory);
    return {kAutomation, "Automation error: " + std::string(caught.what())};
}

Fault fault::overflow(std::string where)
{
    return of(kOverflow, std::move(where));
}
Fault fault::subscript(std::string where)
{
    return of(kSubscript, std::move(where));
}
Fault fault::division_by_zero(std::string where)
{
    return of(kDivisionByZero, std::move(where));
}
Fault fault::type_mismatch(std::string where)
{
    return of(kTypeMismatch, std::move(where));
}
Fault fault::object_not_set(std::string where)
{
    return of(kObjectNotSet, std::move(where));
}
Fault fault::null(std::string where)
{
    return of(kNull, std::move(where));
}
Fault fault::no_current_row(std::string where)
{
    return of(kNoCurrentRow, std::move(where));
}
Fault fault::no_such_column(std::string where)
{
    return of(kNoSuchColumn, std::move(where));
}
Fault fault::closed_object(std::string where)
{
    return of(kClosedObject, std::move(where));
}

}  // namespace velora
