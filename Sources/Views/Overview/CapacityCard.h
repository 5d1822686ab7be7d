#pragma once

#include "Views/Components/Card.h"

#include <optional>
#include <vector>

namespace brimvale {

class ElidedLabel;
class Legend;
class SegmentedBar;
class TextLabel;
struct MeasuredCategory;
struct VolumeInfo;

/// The card of the root volume: its capacity, divided into categories.
class CapacityCard : public Card {
    Q_OBJECT

public:
    explicit CapacityCard(QWidget *parent = nullptr);

    /// The measured categories become segments, System Data last.
    void show(const std::optional<VolumeInfo> &volume, const std::vector<MeasuredCategory> &categories);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ElidedLabel *name_;
    TextLabel *used_;
    TextLabel *free_;
    SegmentedBar *bar_;
    Legend *legend_;
    TextLabel *purgeable_;
    TextLabel *reserved_;
};

} // namespace brimvale
