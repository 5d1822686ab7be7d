#pragma once

#include "Core/Storage/VolumeInfo.h"
#include "Views/Components/Card.h"

#include <vector>

namespace brimvale {

/// The other volumes, with their used and free space.
class VolumesCard : public Card {
    Q_OBJECT

public:
    explicit VolumesCard(QWidget *parent = nullptr);

    void setVolumes(const std::vector<VolumeInfo> &volumes);

private:
    QWidget *makeRow(const VolumeInfo &volume);

    std::vector<VolumeInfo> shown_;
};

} // namespace brimvale
