#pragma once

#include <any>
#include <string>
#include <string_view>
#include <unordered_map>

namespace velora {

/// Answers of lookups during one run, keyed by procedure and arguments. Off outside a run, where every lookup asks.
class RunCache {
public:
    void start() { on_ = !forgets_; }
    void drop()
    {
        on_ = false;
        if (!held_ || answers_.size() > kMostHeld) answers_.clear();
    }

    /// The runs of one command have their answers in common: what they look up belongs to the company as a whole.
    void hold(bool held)
    {
        held_ = held;
        if (!held) answers_.clear();
    }

    /// Every lookup asks anew, in a run too: for comparing.
    void forget_everything(bool forgets) { forgets_ = forgets; }

    /// The answer under the key, or what `ask` gives, kept for the rest of the run. A fault in `ask` keeps nothing.
    template <class Ask>
    auto remember(std::string_view procedure, std::initializer_list<std::string_view> arguments, Ask ask)
    {
        using Answer = decltype(ask());
        if (!on_) return ask();
        std::string key = joined(procedure, arguments);
        if (const auto found = answers_.find(key); found != answers_.end()) {
            return std::any_cast<const Answer&>(found->second);
        }
        Answer answer = ask();
        answers_.emplace(std::move(key), answer);
        return answer;
    }

private:
    static std::string joined(std::string_view procedure, std::initializer_list<std::string_view> arguments)
    {
        std::string key(procedure);
        for (const auto argument : arguments) key.append(1, '\x1f').append(argument);
        return key;
    }

    static constexpr size_t kMostHeld = 100'000;

    bool on_ = false;
    bool held_ = false;
    bool forgets_ = false;
    std::unordered_map<std::string, std::any> answers_;
};

}  // namespace velora
