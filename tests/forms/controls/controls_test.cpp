#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "forms/controls/buttons.h"
#include "forms/controls/control_array.h"
#include "forms/controls/form.h"
#include "forms/controls/lists.h"
#include "forms/controls/month_view.h"
#include "forms/controls/tree.h"

namespace velora::forms {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A form with one control of each sort that writes down what happens to it.
class Noted : public Form {
public:
    Noted() : Form("frmNoted")
    {
        tell_fault = [this](const std::string& procedure, const Fault& caught) {
            events.push_back(procedure + " " + std::to_string(caught.number()));
        };
        note(box.change, "change");
        note(box.got_focus, "in");
        note(box.lost_focus, "out");
        note(check.click, "check");
        note(one.click, "one");
        note(two.click, "two");
        note(apart.click, "apart");
        note(list.click, "list");
        note(drop.click, "drop");
        note(tree.node_click, "node");
        note(tree.expand, "expand");
        note(month.date_click, "date");
        list.add("a");
        list.add("b");
        drop.add("a", 7);
        for (const char* key : {"P1", "P2"}) tree.add({.key = key, .text = key, .parent = ""});
        tree.add({.key = "C1", .text = "C1", .parent = "P2"});
    }

    std::vector<std::string> taken()
    {
        auto all = std::move(events);
        events.clear();
        return all;
    }
    void note(Event& event, const std::string& what)
    {
        event.handle(what, [this, what] { events.push_back(what); });
    }

    Frame frame{*this, "frame"};
    Frame inner{*this, "inner", &frame};
    TextBox box{*this, "box", &inner};
    TextBox other{*this, "other"};
    CheckBox check{*this, "check"};
    OptionButton one{*this, "one", &frame};
    OptionButton two{*this, "two", &frame};
    OptionButton apart{*this, "apart"};
    ListBox list{*this, "list"};
    DropDown drop{*this, "drop"};
    Tree tree{*this, "tree"};
    MonthView month{*this, "month"};
    Label label{*this, "label"};
    Button accept{*this, "accept"};
    Button give_up{*this, "give_up"};
    std::vector<std::string> events;
};

TEST(Controls, ATextSetByAProcedureFiresOnlyIfItDiffers)
{
    Noted form;
    form.box.set_text("a");
    form.box.set_text("a");
    form.box.set_text("");
    EXPECT_THAT(form.taken(), ElementsAre("change", "change"));
}

TEST(Controls, TypingFiresUnlessTheBoxIsEmptyBeforeAndAfter)
{
    Noted form;
    form.box.type("");
    EXPECT_THAT(form.taken(), IsEmpty());
    form.box.type("a");
    form.box.type("a");
    form.box.type("");
    EXPECT_THAT(form.taken(), ElementsAre("change", "change", "change"));
}

TEST(Controls, AListFiresWheneverAnIndexIsSetAndNotWhenItIsClearedOrLosesARow)
{
    Noted form;
    form.list.select(0);
    form.list.select(0);
    form.list.select(-1);
    form.drop.select(0);
    EXPECT_THAT(form.taken(), ElementsAre("list", "list", "list", "drop"));
    form.list.select(1);
    form.taken();
    form.list.remove(0);
    EXPECT_EQ(form.list.selected(), 0) << "the row that was chosen has moved up";
    form.list.remove(0);
    EXPECT_EQ(form.list.selected(), -1);
    form.drop.clear();
    EXPECT_EQ(form.drop.selected(), -1);
    EXPECT_THAT(form.taken(), IsEmpty());
    EXPECT_THROW(form.list.remove(-1), Fault);
    EXPECT_THROW(form.list.select(2), Fault);
}

TEST(Controls, CheckBoxesAndOptionsFireOnlyIfTheirValueChanges)
{
    Noted form;
    form.check.set_value(0);
    form.check.set_value(1);
    form.check.set_value(1);
    form.check.press();
    EXPECT_THAT(form.taken(), ElementsAre("check", "check"));
    EXPECT_THROW(form.check.set_value(3), Fault);
    form.one.press();
    form.one.press();
    form.apart.press();
    form.two.press();
    EXPECT_THAT(form.taken(), ElementsAre("one", "apart", "two")) << "the one that is cleared by another says nothing";
    EXPECT_FALSE(form.one.value());
    EXPECT_TRUE(form.apart.value()) << "it stands in no frame with them";
}

TEST(Controls, ANodeChosenByAProcedureFiresNothingAndOneThatOpensFiresOnce)
{
    Noted form;
    form.tree.select("C1");
    EXPECT_THAT(form.taken(), IsEmpty());
    form.tree.choose("C1");
    EXPECT_EQ(form.tree.event_key(), "C1");
    form.tree.open("P1");
    form.tree.open("P2");
    form.tree.open("P2");
    EXPECT_THAT(form.taken(), ElementsAre("node", "expand")) << "a node without children does not open";
    EXPECT_THROW(form.tree.select("C2"), Fault);
}

TEST(Controls, ADatePickedFiresAndOneSetDoesNot)
{
    Noted form;
    form.month.set_date(DateTime{46188, 0});
    EXPECT_THAT(form.taken(), IsEmpty());
    form.month.pick(DateTime{46188, 0});
    EXPECT_THAT(form.taken(), ElementsAre("date"));
}

TEST(Focus, MovesToWhatCanBeUsedAndTakesIt)
{
    Noted form;
    EXPECT_TRUE(form.enter(form.box));
    EXPECT_TRUE(form.enter(form.box)) << "it is there already, and is not entered anew";
    EXPECT_THAT(form.taken(), ElementsAre("in"));
    EXPECT_FALSE(form.enter(form.label));
    form.other.set_enabled(false);
    EXPECT_FALSE(form.enter(form.other));
    EXPECT_EQ(form.focus(), &form.box);
    EXPECT_TRUE(form.enter(form.list));
    EXPECT_THAT(form.taken(), ElementsAre("out"));
}

TEST(Focus, AFaultWhileItComesOrGoesIsToldByTheForm)
{
    Noted form;
    form.box.got_focus.handle("box_GotFocus", [] { throw fault::of(fault::kPropertyValue); });
    form.box.lost_focus.handle("box_LostFocus", [] { throw fault::of(fault::kPropertyValue); });
    EXPECT_TRUE(form.enter(form.box));
    EXPECT_TRUE(form.enter(form.list));
    EXPECT_THAT(form.taken(), ElementsAre("frmNoted.box_GotFocus 380", "frmNoted.box_LostFocus 380"));
}

TEST(Focus, StaysWhereTheCheckKeepsIt)
{
    Noted form;
    bool lets_go = false;
    form.box.check = [&] {
        form.events.emplace_back("asked");
        return lets_go;
    };
    form.enter(form.box);
    form.taken();
    EXPECT_FALSE(form.enter(form.other));
    EXPECT_EQ(form.focus(), &form.box);
    EXPECT_THAT(form.taken(), ElementsAre("asked"));
    lets_go = true;
    EXPECT_TRUE(form.enter(form.other));
    EXPECT_THAT(form.taken(), ElementsAre("asked", "out"));
}

TEST(Focus, IsLostWithoutACheckWhenTheControlOrAFrameAroundItGoes)
{
    struct Case {
        const char* why;
        void (*take_away)(Noted&);
    };
    for (const auto& c :
         {Case{"hidden", [](Noted& form) { form.box.set_visible(false); }},
          Case{"disabled", [](Noted& form) { form.box.set_enabled(false); }},
          Case{"its frame is hidden", [](Noted& form) { form.inner.set_visible(false); }},
          Case{"the frame around that is disabled", [](Noted& form) { form.frame.set_enabled(false); }}}) {
        Noted form;
        form.box.check = [] { return false; };
        form.enter(form.box);
        form.taken();
        c.take_away(form);
        EXPECT_EQ(form.focus(), nullptr) << c.why;
        EXPECT_THAT(form.taken(), IsEmpty()) << c.why;
        EXPECT_FALSE(form.enter(form.box)) << c.why;
        EXPECT_TRUE(form.enter(form.other)) << c.why;
    }
}

TEST(Focus, AFrameThatIsHiddenElsewhereLeavesIt)
{
    Noted form;
    form.enter(form.other);
    form.frame.set_visible(false);
    EXPECT_EQ(form.focus(), &form.other);
    EXPECT_FALSE(form.box.is_shown());
    EXPECT_TRUE(form.box.visible()) << "its own flag";
}

TEST(Keys, AcceptLeavesTheBoxAndGivingUpDoesNot)
{
    Noted form;
    form.accept.shortcut = kAcceptKey;
    form.give_up.shortcut = kGiveUpKey;
    form.note(form.accept.click, "accept");
    form.note(form.give_up.click, "give up");
    form.other.check = [] { return false; };
    form.enter(form.other);
    EXPECT_TRUE(form.press_shortcut(kAcceptKey));
    EXPECT_THAT(form.taken(), IsEmpty());
    form.press_shortcut(kGiveUpKey);
    EXPECT_THAT(form.taken(), ElementsAre("give up"));
    EXPECT_EQ(form.focus(), &form.other);
    form.other.check = nullptr;
    form.press_shortcut(kAcceptKey);
    EXPECT_EQ(form.focus(), &form.accept);
    form.accept.set_enabled(false);
    form.press_shortcut(kAcceptKey);
    EXPECT_THAT(form.taken(), ElementsAre("accept"));
    EXPECT_FALSE(form.press_shortcut("F9"));
}

TEST(Handlers, AFaultEndsTheHandlerAndGoesNoFurther)
{
    Noted form;
    form.check.click.handle("check_Click", [&] {
        form.events.emplace_back("begun");
        throw fault::subscript();
    });
    form.check.press();
    EXPECT_THAT(form.taken(), ElementsAre("begun", "frmNoted.check_Click 9"));
    EXPECT_EQ(form.check.value(), 1);
}

TEST(Notices, AWatcherMayGoWhileItIsTold)
{
    Notice<int> notice;
    std::vector<int> told;
    size_t second = 0;
    notice.watch([&](int number) {
        told.push_back(number);
        notice.forget(second);
    });
    second = notice.watch([&](int number) { told.push_back(-number); });
    notice.tell(1);
    notice.tell(2);
    EXPECT_THAT(told, ElementsAre(1, 2));
}

TEST(Notices, EveryChangeThatShowsIsTold)
{
    Noted form;
    int told = 0;
    form.box.changed.watch([&] { ++told; });
    form.box.set_text("a");
    form.box.set_back(Back::Face);
    form.box.set_back(Back::Face);
    form.box.set_visible(false);
    form.box.set_enabled(false);
    form.box.set_enabled(false);
    EXPECT_EQ(told, 4) << "what stays as it is is not told";
}

TEST(ControlArrays, MembersBearTheirIndex)
{
    Noted form;
    const ControlArray<Label> labels(form, "lblMany", {&form.frame, &form.inner});
    EXPECT_EQ(labels[1].name(), "lblMany(1)");
    EXPECT_EQ(labels[1].around(), &form.inner);
    EXPECT_EQ(form.find("lblMany(0)"), &labels[0]);
    EXPECT_EQ(form.find("lblMany(2)"), nullptr);
}

}  // namespace
}  // namespace velora::forms
