#pragma once

#include "Core/Model/CorvelModel.h"
#include "Support/RecordingActions.h"
#include "Support/SampleHome.h"
#include "Support/Window.h"

#include <gtest/gtest.h>

namespace brimvale::testing {

/// A page of the window, for a user of a Mac with an empty home, whose removals are only recorded.
template<class Page>
class PageTest : public ::testing::Test {
protected:
    PageTest() { page.resize(1000, 700); }

    template<class Widget = QWidget>
    [[nodiscard]] Widget &find(const char *name) const {
        return testing::find<Widget>(page, name);
    }
    /// What a label or a button says; empty where it is not to be seen.
    [[nodiscard]] std::string text(const char *name) const { return shown(page, name); }
    [[nodiscard]] bool isVisible(const char *name) const { return find(name).isVisible(); }
    static void click(QWidget &widget) { testing::click(widget); }
    void click(const char *button) const { testing::click(page, button); }

    SampleHome home;
    RecordingActions actions;
    CorvelModel model{actions};
    Page page{model};
};

} // namespace brimvale::testing
