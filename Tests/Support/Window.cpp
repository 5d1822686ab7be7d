#include "Support/Window.h"

#include "Views/Components/NoteLabel.h"

#include <QLabel>

namespace brimvale::testing {

std::string shown(const QWidget &in, const char *name) {
    const auto *part = in.findChild<QWidget *>(QLatin1String(name));
    if (part == nullptr || !part->isVisible())
        return "";
    if (const auto *note = qobject_cast<const NoteLabel *>(part))
        return note->text().toStdString();
    if (const auto *button = qobject_cast<const QAbstractButton *>(part))
        return button->text().toStdString();
    return qobject_cast<const QLabel *>(part)->text().toStdString();
}

std::vector<std::string> labels(const QWidget &in, const char *name) {
    std::vector<std::string> texts;
    for (const QLabel *label : in.findChildren<QLabel *>(QLatin1String(name)))
        texts.push_back(label->text().toStdString());
    for (const NoteLabel *note : in.findChildren<NoteLabel *>(QLatin1String(name)))
        texts.push_back(note->text().toStdString());
    return texts;
}

void click(QWidget &widget) {
    QTest::mouseClick(&widget, Qt::LeftButton);
}

void click(const QWidget &in, const char *button) {
    click(find<QPushButton>(in, button));
}

void activate(QWidget &window) {
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

bool eventually(const std::function<bool()> &isSo) {
    return QTest::qWaitFor(isSo, 60'000);
}

} // namespace brimvale::testing
