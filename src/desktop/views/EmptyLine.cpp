#include "desktop/views/EmptyLine.h"

#include "desktop/binders/SimpleBinders.h"
#include "widgets/Child.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tidewell {

void AddEmptyLine(QVBoxLayout& column, TLabel& label) {
    auto& line = NewChild<QLabel>(*column.parentWidget());
    line.setAlignment(Qt::AlignCenter);
    line.setWordWrap(true);
    QPalette grey = line.palette();
    grey.setColor(QPalette::WindowText, grey.color(QPalette::PlaceholderText));
    line.setPalette(grey);
    column.addWidget(&line, 1);
    BindLabel(line, label);
}

} // namespace tidewell
