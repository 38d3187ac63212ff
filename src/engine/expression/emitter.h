#pragma once

#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/expression/program.h"
#include "engine/expression/token.h"

namespace velora::engine {

std::string quoted(std::string_view text);

/// The two ends of compiling: the tokens that are read and the instructions that are written. What the tokens mean is
/// the compiler's matter.
class Emitter {
protected:
    explicit Emitter(std::string_view text) : tokens_(tokens_of(text)), program_(std::make_shared<Program>()) {}

    [[noreturn]] static void fail(const Token& at, const std::string& reason);
    static std::string shown(const Token& token);

    [[nodiscard]] const Token& token(size_t ahead = 0) const;
    [[nodiscard]] bool is_mark(std::string_view mark, size_t ahead = 0) const;
    [[nodiscard]] bool is_name(std::string_view name) const;
    /// Puts the tokens of another text, in brackets, where the reading is. They stand at the place of `at`.
    void splice(std::string_view text, const Token& at);
    void pass(size_t tokens = 1) { at_ += tokens; }
    bool take(std::string_view mark);    ///< passes over the mark, if it is there
    void expect(std::string_view mark);  ///< @throws SyntaxError when it is not

    [[nodiscard]] ValueClass class_of(uint32_t instruction) const { return program_->code[instruction].result; }
    [[nodiscard]] Program& program() { return *program_; }

    uint32_t emit(Instruction instruction, std::span<const uint32_t> operands);
    uint32_t emit(Op op, ValueClass result, std::initializer_list<uint32_t> operands, uint32_t slot = 0);
    uint32_t constant(Cell cell);
    /// Adds an operand to an instruction that takes any number: a + b + c is one joining, not two.
    uint32_t extended(uint32_t instruction, uint32_t operand);
    /// The program whose result is that instruction.
    std::shared_ptr<const Program> finished(uint32_t result);

private:
    std::vector<Token> tokens_;
    size_t at_ = 0;
    std::shared_ptr<Program> program_;
};

}  // namespace velora::engine
