#include "widgets/FormResizer.h"

#include "widgets/Child.h"

#include <QSplitter>

#include <numeric>

namespace tidewell {

TFormResizer::TFormResizer(QWidget* form) : QObject(form) {}

void TFormResizer::Add(QSplitter& splitter, std::vector<double> shares) {
    const std::size_t index = Entries.size();
    Entries.push_back({&splitter, std::move(shares)});
    FilterEvents(splitter, *this, [this, index](const QEvent& event) {
        if (event.type() == QEvent::Resize)
            Apply(Entries[index]);
        return false;
    });
    connect(&splitter, &QSplitter::splitterMoved, this, [this, index] {
        const QList<int> sizes = Entries[index].Splitter->sizes();
        Entries[index].Shares.assign(sizes.begin(), sizes.end());
    });
    Apply(Entries.back());
}

void TFormResizer::Apply() {
    for (const auto& entry : Entries)
        Apply(entry);
}

void TFormResizer::Apply(const TEntry& entry) {
    const double whole = std::accumulate(entry.Shares.begin(), entry.Shares.end(), 0.0);
    if (!entry.Splitter || whole <= 0)
        return;
    const bool across = entry.Splitter->orientation() == Qt::Horizontal;
    const int length = across ? entry.Splitter->width() : entry.Splitter->height();
    const int room = length - entry.Splitter->handleWidth() * (static_cast<int>(entry.Shares.size()) - 1);
    QList<int> sizes;
    for (const double share : entry.Shares)
        sizes.append(qRound(room * share / whole));
    entry.Splitter->setSizes(sizes);
}

} // namespace tidewell
