#pragma once

#include <string>
#include <vector>

#include "engine/expression/definition_error.h"

namespace velora::engine {

/// The expressions of a definition and its subreports that cannot be compiled, so that all are told at once.
class Refusals {
public:
    void add(const DefinitionError& refused);
    /// Those that are added from now on, up to the end of the scope, are of that file.
    class Within {
    public:
        Within(Refusals& refusals, const std::string& file);
        ~Within() { refusals_.within_.resize(size_); }
        Within(const Within&) = delete;
        Within& operator=(const Within&) = delete;

    private:
        Refusals& refusals_;
        size_t size_;
    };

    [[nodiscard]] const std::vector<std::string>& lines() const { return lines_; }
    /// @throws DefinitionError with all of them, if there are any
    void raise() const;

private:
    static constexpr size_t kMost = 100;

    std::vector<DefinitionError> all_;
    std::vector<std::string> lines_;
    std::string within_;
};

}  // namespace velora::engine
