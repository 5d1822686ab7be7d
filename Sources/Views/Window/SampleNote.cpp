#include "Views/Window/SampleNote.h"

#include "Base/FileURL.h"
#include "Sample/Sample.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"

#include <QPainter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

SampleNote::SampleNote(const FileURL &disk, QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("sampleNote"));
    auto *line = new ElidedLabel(Type::Size::caption, QFont::Medium, Qt::ElideMiddle, this);
    line->setObjectName(QStringLiteral("sampleLine"));
    line->setText(u"Sample in %1"_s.arg(displayedText(disk.path())));
    setToolTip(asToolTip(text(sample::noteAbout(disk, "brimvale"))));
    setAccessibleName(line->text());

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 7, 18, 7);
    layout->addWidget(line);
}

void SampleNote::paintEvent(QPaintEvent *) {
    QPainter(this).fillRect(QRect(0, 0, width(), 1), Theme::current().border);
}

} // namespace brimvale
