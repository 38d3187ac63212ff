#pragma once

#include <string>

#include "adapters/cups/destinations.h"
#include "platform/printers.h"

namespace velora::cups {

/// A connection to the queue of one printer: that of the scheduler, else the printer's own.
class Queue {
public:
    /// @throws Fault 482 for a queue that cannot be reached
    Queue(const Destinations& destinations, cups_dest_t& destination);
    ~Queue();
    Queue(const Queue&) = delete;
    Queue& operator=(const Queue&) = delete;

    /// @throws Fault 482 for a printer that is stopped or takes no jobs, with its reason
    void require_ready();
    /// Hands the document over. @throws Fault 482; the job is then taken back
    int send(const PrintJob& job);

private:
    struct Options;

    [[noreturn]] void fail(const std::string& what) const;
    /// The last answer's words, and for a login how it stands.
    [[nodiscard]] std::string last_error() const;
    [[nodiscard]] int make_job(const PrintJob& job, const Options& options);
    void send_document(const PrintJob& job, int number, const Options& options);
    void require_job_alive(int number);
    [[nodiscard]] ipp_t* ask(ipp_op_t operation, int job_number) const;

    const CupsLibrary& cups_ = CupsLibrary::loaded();
    cups_dest_t& destination_;
    std::string name_;
    std::string uri_;
    std::string resource_;
    http_t* connection_ = nullptr;  ///< null for the scheduler
    cups_dinfo_t* info_ = nullptr;
};

}  // namespace velora::cups
