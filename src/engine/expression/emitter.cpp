#include "engine/expression/emitter.h"

#include <algorithm>

namespace velora::engine {

namespace {

constexpr uint16_t kDeepestProgram = 400;
constexpr size_t kMostInstructions = 100'000;
constexpr size_t kMostTokens = 1'000'000;
constexpr size_t kMostOperands = 1'000'000;

}  // namespace

std::string quoted(std::string_view text)
{
    return "'" + std::string(text) + "'";
}

void Emitter::fail(const Token& at, const std::string& reason)
{
    throw SyntaxError(at.offset, reason);
}

std::string Emitter::shown(const Token& token)
{
    switch (token.kind) {
        case TokenKind::End:
            return "the end";
        case TokenKind::Literal:
            return "a literal";
        case TokenKind::Reference:
            return "$" + std::string(1, token.reference) + "{" + std::string(token.text) + "}";
        default:
            return quoted(token.text);
    }
}

const Token& Emitter::token(size_t ahead) const
{
    return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
}

bool Emitter::is_mark(std::string_view mark, size_t ahead) const
{
    return token(ahead).kind == TokenKind::Mark && token(ahead).text == mark;
}

bool Emitter::is_name(std::string_view name) const
{
    return token().kind == TokenKind::Name && token().text == name;
}

void Emitter::splice(std::string_view text, const Token& at)
{
    auto tokens = tokens_of(text);
    tokens.back() = {TokenKind::Mark, 0, ")", 0, {}};
    tokens.insert(tokens.begin(), {TokenKind::Mark, 0, "(", 0, {}});
    for (Token& one : tokens) one.offset = at.offset;
    if (tokens_.size() + tokens.size() > kMostTokens) fail(at, "the expression is too long");
    tokens_.insert(tokens_.begin() + static_cast<std::ptrdiff_t>(at_), tokens.begin(), tokens.end());
}

bool Emitter::take(std::string_view mark)
{
    if (!is_mark(mark)) return false;
    ++at_;
    return true;
}

void Emitter::expect(std::string_view mark)
{
    if (!take(mark)) fail(token(), quoted(mark) + " is missing before " + shown(token()));
}

uint32_t Emitter::emit(Instruction instruction, std::span<const uint32_t> operands)
{
    if (program_->code.size() >= kMostInstructions || program_->operands.size() >= kMostOperands) {
        fail(token(), "the expression is too long");
    }
    instruction.first = static_cast<uint32_t>(program_->operands.size());
    instruction.count = static_cast<uint32_t>(operands.size());
    for (const uint32_t operand : operands) {
        const auto below = static_cast<uint16_t>(program_->code[operand].depth + 1);
        instruction.depth = std::max(instruction.depth, below);
        program_->operands.push_back(operand);
    }
    if (is_arithmetic(instruction.op)) {
        const Instruction& left = program_->code[operands[0]];
        const Instruction& right = program_->code[operands[1]];
        if (is_long_chain(left)) instruction.depth = std::max(left.depth, static_cast<uint16_t>(right.depth + 1));
    }
    if (instruction.depth > kDeepestProgram) fail(token(), "the expression is nested too deeply");
    program_->code.push_back(instruction);
    return static_cast<uint32_t>(program_->code.size() - 1);
}

uint32_t Emitter::emit(Op op, ValueClass result, std::initializer_list<uint32_t> operands, uint32_t slot)
{
    return emit(Instruction{op, result, 1, slot, 0, 0}, std::span(operands.begin(), operands.size()));
}

uint32_t Emitter::constant(Cell cell)
{
    const auto result = cell.value_class;
    program_->constants.push_back(std::move(cell));
    return emit(Op::Constant, result, {}, static_cast<uint32_t>(program_->constants.size() - 1));
}

uint32_t Emitter::extended(uint32_t instruction, uint32_t operand)
{
    const Instruction old = program_->code[instruction];
    const auto from = program_->operands.begin() + old.first;
    std::vector<uint32_t> operands(from, from + old.count);
    operands.push_back(operand);
    // the shorter instruction is no longer used, and its operands can give way where they stand last
    if (old.first + old.count == program_->operands.size()) program_->operands.resize(old.first);
    return emit(Instruction{old.op, old.result, 1, 0, 0, 0}, operands);
}

std::shared_ptr<const Program> Emitter::finished(uint32_t result)
{
    if (result + 1 != program_->code.size()) {
        const auto last = program_->code[result];
        program_->code.push_back(last);
    }
    return std::move(program_);
}

}  // namespace velora::engine
