#pragma once

#include <memory>
#include <vector>

#include "host/faults/fault_plan.h"
#include "platform/accounting.h"
#include "platform/database.h"
#include "platform/mail_transport.h"
#include "platform/printers.h"

namespace velora::testing {

/// What a driver says that failed by a plan.
inline constexpr const char* kDriverWords = "The server has gone away.";
inline constexpr const char* kPrinterWords = "The printer has gone away.";
inline constexpr const char* kMailWords = "The mail server has gone away.";

/// The same connection or session, until the plan says otherwise.
std::shared_ptr<Connection> faulty(std::shared_ptr<Connection> connection, FaultPlan& plan);
std::shared_ptr<AccountingSession> faulty(std::shared_ptr<AccountingSession> session, FaultPlan& plan);

/// Two printers that count what lies in them.
class FaultyPrinters final : public Printers {
public:
    FaultyPrinters(FaultPlan& plan, size_t& printed) : plan_(plan), printed_(printed) {}
    [[nodiscard]] std::vector<Printer> list() const override;
    int32_t print(const PrintJob& job) override;

private:
    FaultPlan& plan_;
    size_t& printed_;
};

/// A server that talks in steps, of which one may be the last.
class FaultyMail final : public MailTransport {
public:
    FaultyMail(FaultPlan& plan, size_t& sent) : plan_(plan), sent_(sent) {}
    void Send(const MailProperties& mail, MailEvents& events) override;

private:
    FaultPlan& plan_;
    size_t& sent_;
};

}  // namespace velora::testing
