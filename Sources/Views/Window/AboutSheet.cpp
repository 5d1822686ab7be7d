#include "Views/Window/AboutSheet.h"

#include "Views/Components/TextLabel.h"
#include "Views/Window/ApplicationIcon.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int pictureSize = 96;
constexpr int margin = 32;

} // namespace

AboutSheet::AboutSheet(QWidget *parent)
    : Sheet("aboutSheet", u"About %1"_s.arg(QCoreApplication::applicationName()), parent) {
    auto *icon = new QLabel(this);
    icon->setPixmap(programPicture().pixmap(QSize(pictureSize, pictureSize), devicePixelRatioF()));
    auto *name = new TextLabel(Type::Size::title, QFont::Bold, this);
    name->setText(QCoreApplication::applicationName());
    auto *version = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this);
    version->setText(u"Version %1"_s.arg(QCoreApplication::applicationVersion()));
    version->setObjectName(QStringLiteral("version"));
    version->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto *purpose = new TextLabel(Type::Size::body, TextLabel::Tone::primary, this);
    purpose->setText(u"Shows where disk space has gone and gets it back safely."_s);
    auto *credits = new TextLabel(Type::Size::caption, TextLabel::Tone::tertiary, this);
    credits->setText(u"Made with Qt %1, the Lucide icons and the typeface Inter."_s.arg(qVersion()));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin / 2);
    layout->setSpacing(8);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    for (QLabel *line : {icon, static_cast<QLabel *>(name), static_cast<QLabel *>(version)})
        layout->addWidget(line, 0, Qt::AlignHCenter);
    layout->addSpacing(8);
    layout->addWidget(purpose, 0, Qt::AlignHCenter);
    layout->addWidget(credits, 0, Qt::AlignHCenter);
    layout->addSpacing(8);
    layout->addWidget(buttons);
}

} // namespace brimvale
