#pragma once

#include <span>
#include <string>
#include <string_view>

#include "engine/expression/cell.h"
#include "engine/expression/environment.h"
#include "engine/expression/formatter.h"

namespace velora::engine {

/// One call while it runs. The arguments are as the function's `takes` says; a method's receiver is the first.
struct Call {
    std::span<Cell> arguments;
    const Environment& environment;
    FormatterCache& formatters;

    [[nodiscard]] const Cell& cell(size_t at) const { return arguments[at]; }
    [[nodiscard]] const std::string& text(size_t at) const { return *arguments[at].get_if<std::string>(); }
    [[nodiscard]] int64_t integer(size_t at) const { return *arguments[at].get_if<int64_t>(); }
    [[nodiscard]] double number(size_t at) const { return *arguments[at].get_if<double>(); }
    [[nodiscard]] const Decimal& decimal(size_t at) const { return *arguments[at].get_if<Decimal>(); }
    [[nodiscard]] const DateTime& date(size_t at) const { return *arguments[at].get_if<DateTime>(); }
    [[nodiscard]] bool flag(size_t at) const { return *arguments[at].get_if<bool>(); }
    [[nodiscard]] const Formatter& formatter(size_t at) const
    {
        return **arguments[at].get_if<std::shared_ptr<const Formatter>>();
    }
    [[nodiscard]] const std::string& locale() const { return environment.surroundings().locale; }
};

/// A function of the language. `takes` has a letter for each argument:
///
///   t text   i whole number   n number as it is   f number as a double   m number as a decimal   d date
///   b truth value   F formatter   L list   M map   a anything   o anything or null   * any further arguments
///
/// A null (or a value of the wrong kind, where only the run knows) makes the whole expression null, except for o and *;
/// so does a null that a function gives which takes neither and asks nothing of the run.
struct Function {
    /// ".": method of the first argument, "new": constructor, "array": the parts of one, "": free, else a class
    std::string_view owner;
    std::string_view name;
    std::string_view takes;
    ValueClass result;  ///< Object where it depends on the arguments
    Cell (*call)(Call& call);
    bool asks_the_run = false;  ///< uses the locale, the date or the resources of the run
};

std::span<const Function> text_functions();
std::span<const Function> number_functions();
std::span<const Function> date_functions();
std::span<const Function> format_functions();
std::span<const Function> list_functions();

/// Same class and same value: the Integer 1 is not equal to the Long 1, the decimal 1.0 not to 1.00.
bool same(const Cell& left, const Cell& right);

/// The number by which the language tells values apart.
int64_t hash_code(const Cell& value);

/// A constant of a class, such as Boolean.TRUE. None for an unknown one.
std::optional<Cell> class_constant(std::string_view owner, std::string_view name);

/// Whether the language has a function of that name with that owner, whatever its arguments.
bool has_function(std::string_view owner, std::string_view name);
/// The first function that takes arguments of these classes. Null when there is none.
const Function* find_function(std::string_view owner, std::string_view name, std::span<const ValueClass> arguments);

/// Makes the arguments what the function takes; false when the result is null without a call.
bool prepare(const Function& function, std::span<Cell> arguments);

/// printf in the language's manner: %s %d %,.2f %05d %-10s %x %o %c %b %e %g %h %n %% %2$s %<s and date parts such as
/// %tY. None for a directive that is not one of them. A list as the only argument stands for its parts.
std::optional<std::string> formatted(std::string_view pattern, std::span<const Cell> arguments,
                                     const std::string& locale);
/// "Page {0} of {1}", with formats behind the number as in {0,number,#0.00}. None for a pattern that cannot be read.
/// A list as the only argument stands for its parts.
std::optional<std::string> message(std::string_view pattern, std::span<const Cell> arguments,
                                   const std::string& locale);
/// The same as something that formats a list.
std::shared_ptr<const Formatter> make_message_formatter(std::string pattern, std::string locale);

}  // namespace velora::engine
