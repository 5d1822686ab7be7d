#pragma once

#include <QPushButton>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace brimvale::testing {

/// A part of a window by its object name; there has to be one.
template<class Widget = QWidget>
[[nodiscard]] Widget &find(const QWidget &in, const char *name) {
    auto *found = in.findChild<Widget *>(QLatin1String(name));
    if (found == nullptr)
        ADD_FAILURE() << "no " << name;
    return *found;
}

/// The text of a label, a note or a button; empty where it is not to be seen, or not there.
[[nodiscard]] std::string shown(const QWidget &in, const char *name);

/// The texts of all labels of that name, to be seen or not.
[[nodiscard]] std::vector<std::string> labels(const QWidget &in, const char *name);

void click(QWidget &widget);
void click(const QWidget &in, const char *button);

/// Shows a window and lets it come to the front.
void activate(QWidget &window);

/// Lets the event loop run until this is so; false when it is not after a minute.
[[nodiscard]] bool eventually(const std::function<bool()> &isSo);

} // namespace brimvale::testing
