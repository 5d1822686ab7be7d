#pragma once

#include "Views/Components/Bar.h"

#include <QTimer>

namespace brimvale {

class TextLabel;

/// A sentence at the bottom of the window, about something that the user asked for. It goes by itself.
class NoticeBar : public Bar {
    Q_OBJECT

public:
    explicit NoticeBar(QWidget *parent = nullptr);

    void showNotice(const QString &sentence);

private:
    TextLabel *words_;
    QTimer end_;
};

} // namespace brimvale
