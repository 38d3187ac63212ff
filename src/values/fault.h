#pragma once

#include <cstdint>
#include <exception>
#include <stdexcept>
#include <string>

namespace velora {

/// A run-time fault: the number that decides who tolerates it, the text a user reads, and where known what failed.
class Fault : public std::runtime_error {
public:
    Fault(int32_t number, const std::string& description, std::string where = {});

    [[nodiscard]] int32_t number() const noexcept { return number_; }
    [[nodiscard]] std::string description() const { return what(); }
    [[nodiscard]] const std::string& where() const noexcept { return where_; }  ///< field or statement, may be empty

private:
    int32_t number_;
    std::string where_;
};

/// The fault numbers that the logic tells apart. The texts are those that users know from the product.
namespace fault {
inline constexpr int32_t kInvalidCall = 5;
inline constexpr int32_t kOverflow = 6;
inline constexpr int32_t kOutOfMemory = 7;
inline constexpr int32_t kSubscript = 9;
inline constexpr int32_t kArrayFixed = 10;
inline constexpr int32_t kDivisionByZero = 11;
inline constexpr int32_t kTypeMismatch = 13;
inline constexpr int32_t kFileNotFound = 53;
inline constexpr int32_t kPathAccess = 75;
inline constexpr int32_t kObjectNotSet = 91;
inline constexpr int32_t kInvalidPattern = 93;
inline constexpr int32_t kNull = 94;
inline constexpr int32_t kNoSuchMember = 340;
inline constexpr int32_t kPropertyValue = 380;
inline constexpr int32_t kCannotCreate = 429;
inline constexpr int32_t kAutomation = 440;
inline constexpr int32_t kPrinter = 482;
inline constexpr int32_t kNoCurrentRow = 3021;
inline constexpr int32_t kNoSuchColumn = 3265;
inline constexpr int32_t kClosedObject = 3704;
inline constexpr int32_t kReportFile = 20507;
inline constexpr int32_t kCancelled = 20545;
inline constexpr int32_t kInvalidRow = 30009;
inline constexpr int32_t kNoSuchElement = 35601;
inline constexpr int32_t kDatabase = -2147217900;
inline constexpr int32_t kAccounting = -2147467259;

Fault overflow(std::string where = {});
Fault subscript(std::string where = {});
Fault division_by_zero(std::string where = {});
Fault type_mismatch(std::string where = {});
Fault object_not_set(std::string where = {});
Fault null(std::string where = {});
Fault no_current_row(std::string where = {});
Fault no_such_column(std::string where = {});
Fault closed_object(std::string where = {});

/// The fault of a number alone, with its text; used where a guard answered with a number and nothing was thrown.
Fault of(int32_t number, std::string where = {});

/// Whatever was raised as a fault. What something outside raised in its own way is 440 with its own words, and 7
/// where the memory ran out: numbers that nobody tolerates, so that it ends what it broke.
Fault of(const std::exception& caught);
}  // namespace fault

}  // namespace velora
