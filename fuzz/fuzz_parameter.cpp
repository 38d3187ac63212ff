#include <string>
#include <string_view>

#include "engine/definition/reader.h"
#include "engine/fill/fill.h"

namespace {

using namespace velora::engine;

constexpr std::string_view kDefinition = R"(<jasperReport name="parameters">
    <parameter name="a" class="java.lang.Integer"/><parameter name="b" class="java.math.BigDecimal"/>
    <parameter name="c" class="java.util.Date"/><parameter name="d" class="java.lang.Boolean"/>
    <parameter name="e" class="java.lang.Double"/><parameter name="f"/></jasperReport>)";

CompiledReport report_with_parameters()
{
    std::vector<Warning> warnings;
    return CompiledReport(std::make_shared<model::Definition>(read_definition(kDefinition, warnings)));
}

}  // namespace

/// Any bytes as the value that a person gives to a parameter: taken as its class, or refused with a message. The first
/// byte is the parameter's name.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const CompiledReport report = report_with_parameters();
    const std::string_view given(reinterpret_cast<const char*>(data), size);
    try {
        static_cast<void>(parameter_from_text(report, given.substr(0, 1), given.substr(std::min<size_t>(1, size))));
    } catch (const DefinitionError&) {
    }
    return 0;
}
