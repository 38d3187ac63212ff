#include "adapters/cups/queue.h"

#include <array>
#include <chrono>
#include <fstream>
#include <memory>
#include <thread>

#include "adapters/cups/job_options.h"
#include "values/fault.h"

namespace velora::cups {
namespace {

constexpr int kConnectMilliseconds = 10'000;
constexpr size_t kLongestResource = 1024;

/// An attribute as text; blank where the answer has none.
std::string text_of(const CupsLibrary& cups, ipp_t* answer, const char* name)
{
    ipp_attribute_t* found = cups.ipp_find_attribute(answer, name, IPP_TAG_ZERO);
    const char* text = found != nullptr ? cups.ipp_get_string(found, 0, nullptr) : nullptr;
    return text != nullptr ? text : "";
}

int number_of(const CupsLibrary& cups, ipp_t* answer, const char* name)
{
    ipp_attribute_t* found = cups.ipp_find_attribute(answer, name, IPP_TAG_ENUM);
    return found != nullptr ? cups.ipp_get_integer(found, 0) : 0;
}

/// The first of the reasons that says something.
std::string reason(const std::string& message, const std::string& keyword)
{
    if (!message.empty()) return message;
    return keyword.empty() || keyword == "none" ? "it gives no reason" : keyword;
}

}  // namespace

struct Queue::Options {
    Options(const PrintJob& job, Taker taker)
    {
        for (const auto& [name, value] : job_options(job, taker)) {
            count = cups.add_option(name.c_str(), value.c_str(), count, &all);
        }
    }
    ~Options() { cups.free_options(count, all); }
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;

    const CupsLibrary& cups = CupsLibrary::loaded();
    int count = 0;
    cups_option_t* all = nullptr;
};

Queue::Queue(const Destinations& destinations, cups_dest_t& destination)
    : destination_(destination), name_(name_of(destination)), resource_(kLongestResource, '\0')
{
    uri_ = destinations.option(destination, "printer-uri-supported");
    if (!uri_.empty()) {  // the scheduler's, whose connection libcups keeps
        resource_ = "/printers/" + std::string(destination.name);
        return;
    }
    connection_ = cups_.connect_dest(&destination_, CUPS_DEST_FLAGS_DEVICE, kConnectMilliseconds, nullptr,
                                     resource_.data(), resource_.size(), nullptr, nullptr);
    if (connection_ == nullptr) fail("cannot be reached: " + last_error());
    resource_.resize(resource_.find('\0'));
    uri_ = destinations.option(destination, "resolved-device-uri");
    if (uri_.empty()) uri_ = destinations.option(destination, "device-uri");
}

Queue::~Queue()
{
    cups_.free_dest_info(info_);
    cups_.http_close(connection_);
}

void Queue::fail(const std::string& what) const
{
    throw Fault(fault::kPrinter, "The printer \"" + name_ + "\" " + what + ". Nothing was printed.");
}

std::string Queue::last_error() const
{
    std::string words = cups_.last_error_string();
    for (const ipp_status_t login : {IPP_STATUS_ERROR_FORBIDDEN, IPP_STATUS_ERROR_NOT_AUTHENTICATED,
                                     IPP_STATUS_ERROR_NOT_AUTHORIZED, IPP_STATUS_ERROR_CUPS_AUTHENTICATION_CANCELED}) {
        if (cups_.last_error() == login) return "it wants a login (" + words + ")";
    }
    return words;
}

ipp_t* Queue::ask(ipp_op_t operation, int job_number) const
{
    ipp_t* request = cups_.ipp_new_request(operation);
    cups_.ipp_add_string(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri_.c_str());
    if (job_number > 0) cups_.ipp_add_integer(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "job-id", job_number);
    return cups_.do_request(connection_, request, resource_.c_str());
}

void Queue::require_ready()
{
    const std::unique_ptr<ipp_t, decltype(cups_.ipp_delete)> answer(ask(IPP_OP_GET_PRINTER_ATTRIBUTES, 0),
                                                                    cups_.ipp_delete);
    if (!answer) return fail("does not answer: " + last_error());
    const std::string why = reason(text_of(cups_, answer.get(), "printer-state-message"),
                                   text_of(cups_, answer.get(), "printer-state-reasons"));
    if (number_of(cups_, answer.get(), "printer-state") == IPP_PSTATE_STOPPED) fail("is stopped: " + why);
    ipp_attribute_t* accepting = cups_.ipp_find_attribute(answer.get(), "printer-is-accepting-jobs", IPP_TAG_BOOLEAN);
    if (accepting != nullptr && cups_.ipp_get_boolean(accepting, 0) == 0) fail("takes no jobs: " + why);
}

int Queue::send(const PrintJob& job)
{
    const Options options(job, connection_ == nullptr ? Taker::Scheduler : Taker::Printer);
    info_ = cups_.copy_dest_info(connection_, &destination_);
    if (info_ == nullptr) fail("does not answer: " + last_error());
    const int number = make_job(job, options);
    try {
        send_document(job, number, options);
        require_job_alive(number);
    } catch (const Fault&) {
        cups_.cancel_dest_job(connection_, &destination_, number);
        throw;
    }
    return number;
}

/// Waits for a printer that does one job after the other.
int Queue::make_job(const PrintJob& job, const Options& options)
{
    constexpr int kTries = 60;
    for (int tried = 1;; ++tried) {
        int number = 0;
        const ipp_status_t made = cups_.create_dest_job(connection_, &destination_, info_, &number,
                                                        job_name(job.title).c_str(), options.count, options.all);
        if (made < IPP_STATUS_REDIRECTION_OTHER_SITE && number > 0) return number;
        if (made != IPP_STATUS_ERROR_BUSY || tried == kTries) fail("refuses the job: " + last_error());
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
}

void Queue::send_document(const PrintJob& job, int number, const Options& options)
{
    std::ifstream file(job.file, std::ios::binary);
    if (!file) fail("got no document: \"" + job.file.string() + "\" cannot be read");
    constexpr int kLast = 1;
    const http_status_t started =
        cups_.start_dest_document(connection_, &destination_, info_, number, job_name(job.title).c_str(),
                                  CUPS_FORMAT_PDF, options.count, options.all, kLast);
    std::array<char, 65536> part{};
    bool goes_well = started == HTTP_STATUS_CONTINUE;
    while (goes_well && (file.read(part.data(), part.size()), file.gcount() > 0)) {
        goes_well = cups_.write_request_data(connection_, part.data(), static_cast<size_t>(file.gcount())) ==
                    HTTP_STATUS_CONTINUE;
    }
    const ipp_status_t ended = cups_.finish_dest_document(connection_, &destination_, info_);
    if (!goes_well || file.bad() || ended >= IPP_STATUS_REDIRECTION_OTHER_SITE) {
        fail("refuses the document: " + last_error());
    }
}

/// A printer may take a document and give the job up at once.
void Queue::require_job_alive(int number)
{
    const std::unique_ptr<ipp_t, decltype(cups_.ipp_delete)> answer(ask(IPP_OP_GET_JOB_ATTRIBUTES, number),
                                                                    cups_.ipp_delete);
    if (!answer) return;  // it does not tell; the document is there
    const int state = number_of(cups_, answer.get(), "job-state");
    if (state != IPP_JSTATE_ABORTED && state != IPP_JSTATE_CANCELED && state != IPP_JSTATE_STOPPED) return;
    fail("gave job " + std::to_string(number) + " up: " +
         reason(text_of(cups_, answer.get(), "job-state-message"), text_of(cups_, answer.get(), "job-state-reasons")));
}

}  // namespace velora::cups
