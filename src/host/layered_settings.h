#pragma once

#include <map>
#include <string>

#include "platform/stores.h"

namespace velora {

/// The user's settings with what the command line says laid over them for this run. Writing goes below.
class LayeredSettings final : public SettingsStore {
public:
    explicit LayeredSettings(SettingsStore& below) : below_(below) {}

    void lay_over(const std::string& key, const std::string& value) { over_[key] = value; }
    void uncover(const std::string& key) { over_.erase(key); }
    void clear() { over_.clear(); }
    [[nodiscard]] const SettingsStore& below() const { return below_; }

    [[nodiscard]] std::string get(std::string_view application, std::string_view section, std::string_view key,
                                  std::string_view otherwise) const override
    {
        const auto found = over_.find(key);
        return found != over_.end() ? found->second : below_.get(application, section, key, otherwise);
    }
    void set(std::string_view application, std::string_view section, std::string_view key,
             std::string_view value) override
    {
        below_.set(application, section, key, value);
    }
    void set_all(std::string_view application, std::string_view section, std::span<const NamedText> values) override
    {
        below_.set_all(application, section, values);
    }

private:
    SettingsStore& below_;
    std::map<std::string, std::string, std::less<>> over_;
};

}  // namespace velora
