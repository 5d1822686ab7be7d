#pragma once

#include <QWidget>
#include <optional>
#include <string>

class QComboBox;
class QPushButton;

namespace brimvale {

class ElidedLabel;
class FoldingButton;
class ScanSession;
class TextLabel;
class Volumes;

/// The control bar of the Browse page: the folder to scan, Start and Stop, and the scan's figures.
class ScanBar : public QWidget {
    Q_OBJECT

public:
    /// Both must outlive the bar.
    ScanBar(ScanSession &scan, const Volumes &volumes, QWidget *parent = nullptr);

    /// Lets the user choose a folder, which is scanned at once.
    void chooseFolder();

signals:
    /// The user wants to see what could not be read.
    void unreadableAsked();

protected:
    void changeEvent(QEvent *event) override;

private:
    QWidget *makeControls();
    QWidget *makeProgress();
    void fillPlaces();
    void showSession();
    void showScanRoot();
    void showPlace();
    void showFigures();
    [[nodiscard]] bool isRescanning() const;
    [[nodiscard]] bool isBusy() const;
    void showState();
    void startOrStop();
    void addVolumes();
    void scanChosen(const std::string &path);
    void drawIcons();

    ScanSession &session_;
    const Volumes &volumes_;
    std::optional<std::string> shownRoot_;
    std::optional<bool> wasBusy_; ///< the state shown
    QComboBox *presets_;
    FoldingButton *choose_;
    FoldingButton *scan_;
    ElidedLabel *root_;
    TextLabel *files_;
    TextLabel *bytes_;
    TextLabel *elapsed_;
    FoldingButton *unreadable_;
    QWidget *progress_ = nullptr;
    ElidedLabel *current_;
};

} // namespace brimvale
