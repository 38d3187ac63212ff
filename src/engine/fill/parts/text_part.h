#pragma once

#include <string>
#include <vector>

#include "engine/fill/parts/links.h"
#include "engine/fill/parts/part.h"

namespace velora::engine {

/// A static text or a text field: cut to its box, stretched over pages, or its font made smaller.
class TextPart : public Part {
public:
    TextPart(Run& run, const PartPlan& plan, const BandState& band);

    void evaluate(Moment moment) override;
    bool prepare(int available, bool continuing) override;
    void emit(Emission& emission) override;
    void rewind() override;
    void resolve(Waiting& waiting, Element& element, Moment moment) override;
    [[nodiscard]] bool repeats() const override { return repeats_; }

private:
    void evaluate_text(const Environment& environment);
    void emit_recorded(Emission& emission);
    void resolve_master(uint64_t page, Element& element);
    void show(Element& element, Moment moment, const Environment& environment);
    [[nodiscard]] std::string shown_value(const Environment& environment);
    void take_text(std::string&& raw);
    void restart();

    bool prepare_static(int available, bool continuing);
    bool prepare_waiting(int available, bool continuing);
    bool prepare_now(int available, bool continuing);
    [[nodiscard]] bool leaves_out(bool continuing);
    [[nodiscard]] bool is_blank() const;

    void lay_out(int stretch);
    void scale_font(const TextRequest& request);
    [[nodiscard]] bool stretches() const;
    [[nodiscard]] bool may_split() const;
    void write(Text& target) const;
    void write_lines(TextDetail& detail) const;

    [[nodiscard]] const Style& style() const { return *(scaled_ ? scaled_ : dress_->style); }
    [[nodiscard]] const std::string& text() const { return marked_ ? plain_ : raw_; }

    const bool is_static_;
    const bool is_refused_;  ///< its expression is outside the language and was left out
    const bool waits_;
    std::string raw_, raw_before_, plain_;
    std::vector<TextRun> runs_;
    bool marked_ = false;
    bool rewound_ = false;  ///< the value is taken once more; the one before stays the one before
    bool known_ = false;    ///< there was a value before
    bool repeats_ = true;
    bool keep_all_ = false;
    bool takes_room_ = true;
    size_t start_ = 0;  ///< the part that is shown on this page
    size_t end_ = 0;
    TextLayout layout_;
    float text_height_ = 0;
    const Style* scaled_ = nullptr;
    Value value_;
    Moment moment_ = Moment::Now;
    LinkState link_;
    std::string own_pattern_;
    std::unique_ptr<Pattern> own_formatter_;
};

}  // namespace velora::engine
