#pragma once

#include <QWidget>
#include <optional>
#include <string>

class QComboBox;

namespace brimvale {

class ElidedLabel;
class FoldingButton;
class ScanSession;
class TextLabel;

/// The control bar of the Browse page: the folder to scan, Start and Stop, and the scan's figures.
class ScanBar : public QWidget {
    Q_OBJECT

public:
    /// `scan` must outlive the bar.
    explicit ScanBar(ScanSession &scan, QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    QWidget *makeControls();
    QWidget *makeProgress();
    void fillPresets();
    void showSession();
    void showScanRoot();
    void showFigures();
    void showState();
    void startOrStop();
    void chooseFolder();
    void scanChosen(const std::string &path);
    void drawIcons();

    ScanSession &session_;
    std::optional<std::string> shownRoot_;
    std::optional<bool> wasScanning_; ///< the state shown
    QComboBox *presets_;
    FoldingButton *choose_;
    FoldingButton *scan_;
    ElidedLabel *root_;
    TextLabel *files_;
    TextLabel *bytes_;
    TextLabel *elapsed_;
    TextLabel *unreadable_;
    QWidget *progress_ = nullptr;
    ElidedLabel *current_;
};

} // namespace brimvale
