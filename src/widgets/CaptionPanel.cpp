#include "widgets/CaptionPanel.h"

#include "widgets/Child.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tidewell {

TCaptionPanel::TCaptionPanel(QWidget* parent)
    : QFrame(parent), Title(NewChild<QLabel>(*this)), Column(NewChild<QVBoxLayout>(*this)) {
    Title.setTextFormat(Qt::PlainText);
    Title.setContentsMargins(6, 4, 6, 4);
    QFont font = Title.font();
    font.setBold(true);
    Title.setFont(font);
    Column.setContentsMargins(0, 0, 0, 0);
    Column.setSpacing(0);
    Column.addWidget(&Title);
}

void TCaptionPanel::SetCaption(const QString& caption) {
    Title.setText(caption);
}

void TCaptionPanel::SetContent(QWidget& content) {
    Column.addWidget(&content, 1);
}

} // namespace tidewell
