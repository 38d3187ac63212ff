#include "engine/export/pdf/pdf_protection.h"

#include <qpdf/qpdf-c.h>

#include <memory>
#include <random>

#include "values/fault.h"
#include "values/hex.h"
#include "values/loaded_library.h"

namespace velora::engine {
namespace {

/// What is called of libqpdf.
struct QpdfLibrary {
    LoadedLibrary library{"libqpdf.so.29", "PDF files cannot be encrypted"};
#define VELORA_QPDF(name) decltype(qpdf_##name)* name = library.function<decltype(qpdf_##name)>("qpdf_" #name)
    VELORA_QPDF(init);
    VELORA_QPDF(cleanup);
    VELORA_QPDF(set_suppress_warnings);
    VELORA_QPDF(read_memory);
    VELORA_QPDF(init_write_memory);
    VELORA_QPDF(set_r6_encryption_parameters2);
    VELORA_QPDF(write);
    VELORA_QPDF(get_buffer);
    VELORA_QPDF(get_buffer_length);
    VELORA_QPDF(has_error);
    VELORA_QPDF(get_error);
    VELORA_QPDF(get_error_full_text);
#undef VELORA_QPDF
};

const QpdfLibrary& qpdf()
{
    static const QpdfLibrary library;
    return library;
}

struct Cleanup {
    using pointer = qpdf_data;
    void operator()(qpdf_data data) const noexcept { qpdf().cleanup(&data); }
};

/// A password that nobody knows, where none is to lift what is forbidden.
std::string random_password()
{
    std::random_device random;
    std::string password;
    for (int at = 0; at < 4; ++at) append_hex(password, random(), 8);
    return password;
}

void check(qpdf_data data)
{
    if (!qpdf().has_error(data)) return;
    throw Fault(fault::kAutomation, std::string("The PDF file cannot be encrypted: ") +
                                        qpdf().get_error_full_text(data, qpdf().get_error(data)));
}

}  // namespace

std::string protected_pdf(const std::string& file, const Protection& protection)
{
    const std::unique_ptr<qpdf_data, Cleanup> handle(qpdf().init());
    const qpdf_data data = handle.get();
    qpdf().set_suppress_warnings(data, QPDF_TRUE);
    qpdf().read_memory(data, "document", file.data(), file.size(), nullptr);
    check(data);
    qpdf().init_write_memory(data);
    check(data);
    const std::string owner = protection.owner_password.empty() ? random_password() : protection.owner_password;
    const auto print = protection.print_finely ? qpdf_r3p_full : protection.print ? qpdf_r3p_low : qpdf_r3p_none;
    qpdf().set_r6_encryption_parameters2(data, protection.user_password.c_str(), owner.c_str(), protection.read_out,
                                         protection.copy, protection.assemble, protection.annotate, protection.fill_in,
                                         protection.modify, print, QPDF_TRUE);
    qpdf().write(data);
    check(data);
    const auto* bytes = reinterpret_cast<const char*>(qpdf().get_buffer(data));
    return {bytes, qpdf().get_buffer_length(data)};
}

}  // namespace velora::engine
