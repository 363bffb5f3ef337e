#pragma once

#include <QObject>
#include <QPointer>

#include <vector>

class QSplitter;
class QWidget;

namespace tidewell {

// Keeps the splitters of a form in proportion when the form is resized. The first proportions are those
// given; when the user drags a handle, the new ones hold from then on.
class TFormResizer : public QObject {
  public:
    // The form owns the resizer.
    explicit TFormResizer(QWidget* form);
    // One share per child of the splitter, in order.
    void Add(QSplitter& splitter, std::vector<double> shares);
    void Apply();

  private:
    struct TEntry {
        QPointer<QSplitter> Splitter;
        std::vector<double> Shares;
    };
    static void Apply(const TEntry& entry);

    std::vector<TEntry> Entries;
};

} // namespace tidewell
