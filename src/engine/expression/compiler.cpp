#include <algorithm>
#include <array>

#include "engine/expression/operator_emitter.h"

namespace velora::engine {

namespace {

constexpr int kDeepestNesting = 150;
constexpr int kMostStandIns = 100;
constexpr size_t kLongestText = 1U << 20;

constexpr int kInstanceOfStrength = 7;

constexpr auto kPackages = std::to_array<std::string_view>(
    {"", "java.lang.", "java.math.", "java.util.", "java.text.", "java.sql.", "java.time.", "java.time.format."});

bool is_upper(char c)
{
    return c >= 'A' && c <= 'Z';
}

/// Reads tokens from left to right and writes instructions, operands before the one that uses them.
class Compiler : OperatorEmitter {
public:
    Compiler(std::string_view text, const Names& names) : OperatorEmitter(text), names_(names) {}

    std::shared_ptr<const Program> run()
    {
        const uint32_t result = choice();
        if (token().kind != TokenKind::End) fail(token(), "this is not expected here: " + shown(token()));
        return finished(result);
    }

private:
    // ----------------------------------------------------------------------------------------- operators

    uint32_t choice()
    {
        if (++nesting_ > kDeepestNesting) fail(token(), "the expression is nested too deeply");
        uint32_t result = binary(1);
        if (const Token& mark = token(); take("?")) {
            need(mark, class_of(result), ValueClass::Boolean, "?:");
            const uint32_t yes = choice();
            expect(":");
            const uint32_t no = choice();
            result = chosen(result, yes, no);
        }
        --nesting_;
        return result;
    }

    /// The operators of at least this strength, from left to right.
    uint32_t binary(int strength)
    {
        uint32_t left = unary();
        for (;;) {
            const Token mark = token();
            if (strength <= kInstanceOfStrength && is_name("instanceof")) {
                pass();
                left = instance_of(left);
                continue;
            }
            const Operator* found = find_operator(mark);
            if (found == nullptr || found->strength < strength) return left;
            pass();
            const uint32_t right = binary(found->strength + 1);
            left = combined(*found, mark, left, right);
        }
    }

    uint32_t instance_of(uint32_t value)
    {
        const Token start = token();
        const std::string name = class_path();
        if (name == "Number") return emit(Op::IsNumber, ValueClass::Boolean, {value});
        const auto declared = value_class(name);
        if (!declared) fail(start, "the class " + quoted(name) + " is outside the expression language");
        return emit(Op::IsClass, ValueClass::Boolean, {value}, static_cast<uint32_t>(*declared));
    }

    uint32_t unary()
    {
        if (++nesting_ > kDeepestNesting) fail(token(), "the expression is nested too deeply");
        const uint32_t result = unary_operand();
        --nesting_;
        return result;
    }

    uint32_t unary_operand()
    {
        const Token mark = token();
        if (take("!")) {
            const uint32_t operand = unary();
            need(mark, class_of(operand), ValueClass::Boolean, "!");
            return emit(Op::Not, ValueClass::Boolean, {operand});
        }
        if (take("~")) {
            const uint32_t all_bits = constant(cell::integer(-1));
            return of_bits({"~", 0, Op::BitXor}, mark, unary(), all_bits);
        }
        if (take("-") || take("+")) {
            const uint32_t operand = unary();
            const auto given = class_of(operand);
            if (!is_number(given) && given != ValueClass::Object && given != ValueClass::Null) {
                fail(mark, quoted(mark.text) + " takes a number, not a " + std::string(class_name(given)));
            }
            if (mark.text == "+") return operand;
            const auto result = is_number(given) ? promoted(given, given) : ValueClass::Object;
            return emit(Op::Negate, result, {operand});
        }
        if (const auto cast = cast_class()) return emit(Op::Convert, *cast, {unary()});
        return chained(primary());
    }

    /// Passes over "(Class)" when what follows can be cast.
    std::optional<ValueClass> cast_class()
    {
        if (!is_mark("(") || token(1).kind != TokenKind::Name) return std::nullopt;
        size_t end = 2;
        std::string name(token(1).text);
        while (is_mark(".", end) && token(end + 1).kind == TokenKind::Name) {
            name.append(".").append(token(end + 1).text);
            end += 2;
        }
        if (!is_mark(")", end)) return std::nullopt;
        const Token& next = token(end + 1);
        const bool operand = next.kind == TokenKind::Name || next.kind == TokenKind::Literal ||
                             next.kind == TokenKind::Reference || next.text == "(" || next.text == "!" ||
                             next.text == "~" || (next.text == "-" && !is_upper(name[name.rfind('.') + 1]));
        if (!operand || next.text == "instanceof") return std::nullopt;
        const auto declared = value_class(name);
        if (!declared) fail(token(1), "a cast to " + quoted(name) + " is outside the expression language");
        pass(end + 1);
        return declared;
    }

    // ------------------------------------------------------------------------------------------ operands

    uint32_t primary()
    {
        const Token start = token();
        switch (start.kind) {
            case TokenKind::Literal:
                pass();
                return constant(start.literal);
            case TokenKind::Reference:
                pass();
                return reference(start);
            case TokenKind::Name:
                return named();
            default:
                break;
        }
        if (!take("(")) fail(start, "a value is missing before " + shown(start));
        const uint32_t inner = choice();
        expect(")");
        // a group of its own: "a" + (1 + 2) adds, and ("a" + 1) + 2 joins
        return inner;
    }

    uint32_t reference(const Token& start)
    {
        if (start.reference == 'R') {
            note({Reference::Kind::Resource, 0});
            program().constants.push_back(cell::text(std::string(start.text)));
            return emit(Op::Resource, ValueClass::Text, {}, static_cast<uint32_t>(program().constants.size() - 1));
        }
        const auto [op, kind, found] = looked_up(start);
        if (!found) {
            const std::string_view what = op == Op::Field ? "field" : op == Op::Variable ? "variable" : "parameter";
            fail(start, "there is no " + std::string(what) + " " + quoted(start.text));
        }
        if (!found->stands_for.empty()) return stand_in(start, found->stands_for);
        note({kind, found->slot});
        if (const auto value = of_report(start)) return *value;
        return emit(op, found->value_class, {}, static_cast<uint32_t>(found->slot));
    }

    uint32_t stand_in(const Token& start, std::string_view text)
    {
        if (++stand_ins_ > kMostStandIns) fail(start, "the parameters stand for each other");
        splice(text, start);
        return primary();
    }

    /// $P{JASPER_REPORT}.getPageWidth() and its like.
    std::optional<uint32_t> of_report(const Token& start)
    {
        if (start.reference != 'P' || start.text != "JASPER_REPORT" || !is_mark(".") || !is_mark("(", 2))
            return std::nullopt;
        const auto value = names_.of_report(token(1).text);
        if (!value) fail(token(1), quoted("." + std::string(token(1).text)) + " is outside the expression language");
        pass(3);
        expect(")");
        return constant(cell::from(*value, ValueClass::Object));
    }

    struct LookedUp {
        Op op;
        Reference::Kind kind;
        std::optional<Name> found;
    };

    [[nodiscard]] LookedUp looked_up(const Token& start) const
    {
        if (start.reference == 'F') return {Op::Field, Reference::Kind::Field, names_.field(start.text)};
        if (start.reference == 'V') return {Op::Variable, Reference::Kind::Variable, names_.variable(start.text)};
        return {Op::Parameter, Reference::Kind::Parameter, names_.parameter(start.text)};
    }

    void note(Reference reference)
    {
        auto& all = program().references;
        if (std::ranges::find(all, reference) == all.end()) all.push_back(reference);
    }

    /// A word: a literal, a constructor, a free function, or a class with what is taken from it.
    uint32_t named()
    {
        const Token start = token();
        if (is_name("new")) return constructed();
        if (is_mark("(", 1)) return free_call();
        if (start.text == "true" || start.text == "false") {
            pass();
            return constant(cell::boolean(start.text == "true"));
        }
        if (start.text == "null") {
            pass();
            return constant({});
        }
        return class_member();
    }

    uint32_t free_call()
    {
        const Token start = token();
        pass();
        if (start.text == "IF") return if_call(start);
        return called(start, "", start.text, {});
    }

    uint32_t if_call(const Token& start)
    {
        const auto parts = arguments();
        if (parts.size() != 3) fail(start, "'IF' takes three arguments");
        need(start, class_of(parts[0]), ValueClass::Boolean, "IF");
        return chosen(parts[0], parts[1], parts[2]);
    }

    /// The words of a dotted name up to its class: "java.math.BigDecimal". Packages that the language does not have
    /// stay in the name.
    std::string class_path()
    {
        const Token start = token();
        if (start.kind != TokenKind::Name) fail(start, "the name of a class is missing before " + shown(start));
        std::string package;
        while (token().kind == TokenKind::Name && !is_upper(token().text.front()) && is_mark(".", 1) &&
               token(2).kind == TokenKind::Name) {
            package.append(token().text).append(".");
            pass(2);
        }
        std::string name(token().text);
        pass();
        if (package + name == "java.sql.Date") return "java.sql.Date";
        if (std::ranges::find(kPackages, package) == kPackages.end()) return package + name;
        return name;
    }

    uint32_t constructed()
    {
        pass();
        const Token start = token();
        const std::string name = class_path();
        if (is_mark("[") && is_mark("]", 1) && is_mark("{", 2)) return array(start);
        if (!is_mark("(") || !has_function("new", name)) {
            fail(start, "'new " + name + "' is outside the expression language");
        }
        return called(start, "new", name, {});
    }

    /// The parts behind `new String[]`.
    uint32_t array(const Token& start)
    {
        pass(3);
        std::vector<uint32_t> parts;
        while (!is_mark("}")) {
            parts.push_back(choice());
            if (!take(",")) break;
        }
        expect("}");
        return call(start, "array", "", parts);
    }

    uint32_t class_member()
    {
        const Token start = token();
        std::string owner = class_path();
        // a class that takes over what its parent makes
        if (owner == "SimpleDateFormat") owner = "DateFormat";
        if (owner == "DecimalFormat") owner = "NumberFormat";
        if (!take(".") || token().kind != TokenKind::Name) fail(start, unknown_word(owner));
        const Token member = token();
        pass();
        if (is_mark("(")) {
            if (!has_function(owner, member.text)) {
                fail(start, quoted(owner + "." + std::string(member.text)) + " is outside the expression language");
            }
            return called(start, owner, member.text, {});
        }
        auto value = class_constant(owner, member.text);
        if (!value) {
            fail(start, quoted(owner + "." + std::string(member.text)) + " is outside the expression language");
        }
        return constant(std::move(*value));
    }

    static std::string unknown_word(std::string_view word)
    {
        return quoted(word) + " is outside the expression language; fields are written $F{name}, texts in quotes";
    }

    /// What is called on a value: .method(…).method(…)[…]
    uint32_t chained(uint32_t value)
    {
        for (;;) {
            const Token mark = token();
            if (take("[")) {
                const uint32_t index = choice();
                expect("]");
                value = call(mark, ".", "[]", {value, index}, part_class(value));
                continue;
            }
            if (!take(".")) return value;
            value = method(value);
        }
    }

    uint32_t method(uint32_t value)
    {
        const Token name = token();
        if (name.kind != TokenKind::Name) fail(name, "the name of a method is missing before " + shown(name));
        pass();
        if (is_mark("(")) return called(name, ".", name.text, {value});
        if (name.text != "length") {
            fail(name, quoted("." + std::string(name.text)) + " is outside the expression language");
        }
        return call(name, ".", "[].length", {value});
    }

    /// The class of the parts of a list, where it is known.
    ValueClass part_class(uint32_t list)
    {
        const Instruction& made = program().code[list];
        if (made.op != Op::Call) return ValueClass::Object;
        const auto name = program().functions[made.slot]->name;
        return name == "split" ? ValueClass::Text : name == "toCharArray" ? ValueClass::Character : ValueClass::Object;
    }

    std::vector<uint32_t> arguments()
    {
        expect("(");
        std::vector<uint32_t> out;
        if (take(")")) return out;
        do {
            out.push_back(choice());
        } while (take(","));
        expect(")");
        return out;
    }

    uint32_t called(const Token& start, std::string_view owner, std::string_view name, std::vector<uint32_t> operands)
    {
        if (!has_function(owner, name)) {
            fail(start, quoted(name) + " is outside the expression language");
        }
        std::ranges::copy(arguments(), std::back_inserter(operands));
        return call(start, owner, name, operands);
    }

    uint32_t call(const Token& start, std::string_view owner, std::string_view name,
                  const std::vector<uint32_t>& operands, ValueClass result = ValueClass::Object)
    {
        std::vector<ValueClass> classes;
        for (const uint32_t operand : operands) classes.push_back(class_of(operand));
        const Function* function = find_function(owner, name, classes);
        if (function == nullptr) fail(start, quoted(name) + " does not take " + listed(owner, classes));
        program().asks_the_run = program().asks_the_run || function->asks_the_run;
        if (owner.empty() && name == "str") note({Reference::Kind::Resource, 0});
        program().functions.push_back(function);
        const auto slot = static_cast<uint32_t>(program().functions.size() - 1);
        if (result == ValueClass::Object) result = function->result;
        return emit(Instruction{Op::Call, result, 1, slot, 0, 0}, operands);
    }

    static std::string listed(std::string_view owner, std::span<const ValueClass> classes)
    {
        std::string out;
        std::string on;
        if (owner == ".") {
            on = " on a " + std::string(class_name(classes.front()));
            classes = classes.subspan(1);
        }
        for (const ValueClass c : classes) out.append(out.empty() ? "" : ", ").append(class_name(c));
        return "(" + out + ")" + on;
    }

    const Names& names_;
    int nesting_ = 0;
    int stand_ins_ = 0;
};

}  // namespace

std::shared_ptr<const Program> compile_program(std::string_view text, const Names& names)
{
    if (text.size() > kLongestText) throw SyntaxError(0, "the expression is too long");
    return Compiler(text, names).run();
}

}  // namespace velora::engine
