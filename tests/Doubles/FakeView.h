#pragma once

#include "Doubles/Journal.h"
#include "Ports/View.h"

#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace fcp::test {

// A view that remembers its description and what was done to it.
class FakeView final : public View {
public:
    FakeView(Journal& sharedJournal, std::string viewName, ViewDescription viewDescription)
        : description(std::move(viewDescription))
        , name(std::move(viewName))
        , visible(!description.hidden)
        , journal(sharedJournal) {
        if (auto const* const label = std::get_if<LabelContent>(&description.content))
            text = label->text;
    }

    [[nodiscard]] Rect bounds() const override {
        return {0, 0, description.frame.width, description.frame.height};
    }

    void addSubview(std::shared_ptr<View> subview) override {
        auto const fake = std::dynamic_pointer_cast<FakeView>(subview);
        journal.note(name + " addSubview " + (fake ? fake->name : "?"));
        subviews.push_back(fake);
    }

    void show() override {
        visible = true;
        journal.note(name + " show");
    }

    void hide() override {
        visible = false;
        journal.note(name + " hide");
    }

    void setText(std::string const& newText) override {
        text = newText;
        journal.note(name + " setText " + newText);
    }

    [[nodiscard]] bool isInWindow() const override { return inWindow; }

    void makeFirstResponder(View* responder) override {
        auto const* const fake = dynamic_cast<FakeView*>(responder);
        journal.note(name + " makeFirstResponder " + (fake ? fake->name : "none"));
    }

    // Presses a button.
    void click() const { std::get<ButtonContent>(description.content).action(); }

    ViewDescription const description;
    std::string const name;
    std::string text;
    bool visible;
    bool inWindow = false;
    std::vector<std::shared_ptr<FakeView>> subviews;

private:
    Journal& journal;
};

// Names the views by what they show: "container", "view 2", "label Connection paused", "spinner", "button
// ...".
class FakeUserInterface final : public UserInterface {
public:
    explicit FakeUserInterface(Journal& sharedJournal)
        : journal(sharedJournal) {}

    [[nodiscard]] std::shared_ptr<View> makeView(ViewDescription const& description) override {
        auto view = std::make_shared<FakeView>(journal, nameOf(description), description);
        journal.note("make " + view->name);
        made.push_back(view);
        return view;
    }

    void installView(std::shared_ptr<View> view) override {
        installed = std::dynamic_pointer_cast<FakeView>(view);
        journal.note("install " + installed->name);
    }

    // The one view whose name begins so; fails loudly when there is none.
    [[nodiscard]] FakeView& find(std::string const& name) const {
        for (auto const& view : made) {
            if (view->name.starts_with(name))
                return *view;
        }
        throw std::logic_error("no view named " + name);
    }

    std::shared_ptr<FakeView> installed;
    std::vector<std::shared_ptr<FakeView>> made;

private:
    [[nodiscard]] std::string nameOf(ViewDescription const& description) const {
        if (auto const* const label = std::get_if<LabelContent>(&description.content))
            return "label " + label->text;
        if (auto const* const button = std::get_if<ButtonContent>(&description.content))
            return "button " + button->title;
        if (std::holds_alternative<SpinnerContent>(description.content))
            return "spinner";
        static constexpr char const* plain[] = {"container", "loading overlay", "error overlay",
                                                "accent bar"};
        std::size_t index = 0;
        for (auto const& view : made)
            index += std::holds_alternative<std::monostate>(view->description.content) ? 1 : 0;
        return index < std::size(plain) ? plain[index] : "view";
    }

    Journal& journal;
};

} // namespace fcp::test
