#include "Support.h"
#include "rig/Journey.h"
#include "rig/Wire.h"

// Every journey once on the real windows, by mouse and keyboard: behind each step each widget shows what the
// control of its name holds, and in the end the same was sent and told as without windows.
namespace tidewell::test {
namespace {

// Both as what they should be, or nothing.
template <class TWidget, class TModel>
std::optional<std::pair<const TWidget&, const TModel&>> As(const QWidget& widget, const TControl& control) {
    const auto* const view = dynamic_cast<const TWidget*>(&widget);
    const auto* const model = dynamic_cast<const TModel*>(&control);
    if (view == nullptr || model == nullptr)
        return std::nullopt;
    return std::pair<const TWidget&, const TModel&>(*view, *model);
}

// What the person does to the widget of a control; false for what is not on the screen.
class TScreenHands {
  public:
    TScreenHands(TWindows& windows, TJourney& journey) : Windows(windows), World(journey.World) {
        Boxes.setInterval(1);
        QObject::connect(&Boxes, &QTimer::timeout, &Boxes, [&journey] {
            auto* const box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr)
                return;
            journey.ShowMessageBox(EMessageKind::Error, box->text().toStdString(), EButtons::Ok);
            box->accept();
        });
        Boxes.start();
    }

    bool Do(const TControl& control, const std::string& verb, const std::string& words) {
        Windows.Update();
        QWidget* const widget = WidgetOf(control);
        if (const auto* item = dynamic_cast<const TMenuItem*>(&control))
            return verb == "click" && Trigger(*item);
        if (widget == nullptr || !widget->isEnabled() || !TurnTo(*widget))
            return false;
        const QString text = QString::fromStdString(words);
        const QStringList parts = text.split(' ');
        return verb == "click"  ? Click(*widget)
               : verb == "type" ? Type(*widget, text)
               : verb == "key"  ? Press(*widget, text)
                                : Pick(*widget, parts, control);
    }

  private:
    template <class TFound>
    TFound* Find(const TControl& control) const {
        for (const TForm* form : World.Forms())
            if (QWidget* const window = Windows.Of(*form);
                window != nullptr && form->FindControl(control.Name()) == &control)
                return window->findChild<TFound*>(QString::fromStdString(control.Name()));
        return nullptr;
    }
    QWidget* WidgetOf(const TControl& control) const { return Find<QWidget>(control); }
    // Shows its page; whether it is on the screen then.
    static bool TurnTo(const QWidget& widget) {
        for (QWidget* above = widget.parentWidget(); above != nullptr; above = above->parentWidget())
            if (auto* const tabs = dynamic_cast<QTabWidget*>(above); tabs != nullptr && !widget.isVisible())
                for (int page = 0; page < tabs->count(); ++page)
                    if (tabs->isTabVisible(page) && tabs->widget(page)->isAncestorOf(&widget))
                        tabs->setCurrentIndex(page);
        QCoreApplication::processEvents();
        return widget.isVisible();
    }
    bool Trigger(const TMenuItem& item) const {
        auto* const action = Find<QAction>(item);
        if (action == nullptr || !action->isEnabled())
            return false;
        action->trigger();
        return true;
    }
    static void ClickAt(const QAbstractItemView& view, const QModelIndex& index, Qt::MouseButton button) {
        QTest::mouseClick(view.viewport(), button, {}, view.visualRect(index).center());
    }
    static bool Click(QWidget& widget) {
        auto* const button = dynamic_cast<QAbstractButton*>(&widget);
        if (button != nullptr)
            button->click();
        else if (auto* const list = dynamic_cast<QListView*>(&widget))
            QTest::mouseClick(list->viewport(), Qt::LeftButton);
        return button != nullptr || dynamic_cast<QListView*>(&widget) != nullptr;
    }
    static bool Type(QWidget& widget, const QString& text) {
        auto* const field = dynamic_cast<QLineEdit*>(&widget);
        if (field != nullptr && (field->isReadOnly() || !field->inputMask().isEmpty()))
            return false;
        if (field != nullptr) {
            field->selectAll();
            QTest::keyClick(field, Qt::Key_Delete);
        }
        for (const QChar letter : text)
            QTest::sendKeyEvent(QTest::Click, &widget, Qt::Key_unknown, letter, Qt::NoModifier);
        return true;
    }
    static bool Press(QWidget& widget, const QString& key) {
        const bool isReturn = key == "Return";
        if (!isReturn && key != "Space")
            return false;
        QTest::keyClick(&widget, isReturn ? Qt::Key_Return : Qt::Key_Space);
        return true;
    }
    static bool Pick(QWidget& widget, const QStringList& words, const TControl& control) {
        const int row = words[0].toInt();
        const int column = words.size() > 1 ? words[1].toInt() : -1;
        const bool isRight = words.last() == "right";
        if (auto* const list = dynamic_cast<QListWidget*>(&widget); list != nullptr && row < list->count()) {
            ClickAt(*list, list->model()->index(row, 0), Qt::LeftButton);
        } else if (auto* const tree = dynamic_cast<QTreeWidget*>(&widget);
                   tree != nullptr && row < tree->topLevelItemCount()) {
            const QModelIndex root = tree->model()->index(row, 0);
            const QModelIndex node = column < 0 ? root : tree->model()->index(column, 0, root);
            if (!node.isValid() || isRight)
                return false;
            ClickAt(*tree, node, Qt::LeftButton);
        } else if (auto* const tabs = dynamic_cast<QTabWidget*>(&widget)) {
            const auto& pages = dynamic_cast<const TPageControl&>(control).Pages;
            for (int page = 0; page < tabs->count(); ++page)
                if (pages[static_cast<std::size_t>(page)].get().Name() == words.last().toStdString())
                    QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {},
                                      tabs->tabBar()->tabRect(page).center());
        } else if (auto* const group = dynamic_cast<QGroupBox*>(&widget)) {
            group->findChildren<QRadioButton*>().at(row)->click();
        } else if (auto* const bar = dynamic_cast<QScrollBar*>(&widget);
                   bar != nullptr && row <= bar->maximum()) {
            bar->setSliderDown(true);
            bar->setSliderPosition(row);
            if (words.last() != "drag")
                bar->setSliderDown(false);
        } else {
            return PickCell(widget, row, column, words.last(), control);
        }
        return true;
    }
    static bool PickCell(QWidget& widget, int row, int column, const QString& how, const TControl& control) {
        auto* const view = dynamic_cast<QTableView*>(&widget);
        if (view == nullptr || row < 1 || row > view->model()->rowCount())
            return false;
        const QModelIndex cell = view->model()->index(row - 1, std::max(column, 0));
        view->scrollTo(cell);
        const QRect rect = view->visualRect(cell);
        const auto& grid = dynamic_cast<const TStringGrid&>(control);
        const TCellRect at{rect.left(), rect.top(), rect.right() + 1, rect.bottom() + 1};
        const TCellRect box = grid.BoxRect && column >= 0 ? grid.BoxRect(at) : at;
        const QPoint place((box.Left + box.Right) / 2, (box.Top + box.Bottom) / 2);
        if (how == "double")
            QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, place);
        else if (column < 0)
            view->selectRow(row - 1);
        else
            QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place);
        return true;
    }

    TWindows& Windows;
    TWorld& World;
    QTimer Boxes; // of what a handler throws: the journey takes them from the windows
};

class TOnScreen {
  public:
    explicit TOnScreen(TJourneyCase& journey) : Case(journey), Journey(journey) {
        Journey.Lenient = true; // what it tells is compared elsewhere
        Journey.OnStep = Journey.OnDialog = [this] { Look(); };
        Journey.OnHands = [this](const TControl& control, const std::string& verb, const std::string& words) {
            return Hands.Do(control, verb, words);
        };
        Journey.World.OnExchange = [this](const std::string& call) { Calls.push_back(call); };
        Journey.Play();
        TJourney bare(Case);
        std::vector<std::string> calls;
        bare.Lenient = true;
        bare.World.OnExchange = [&calls](const std::string& call) { calls.push_back(call); };
        bare.Play();
        EXPECT_EQ(JoinCalls(Calls), JoinCalls(calls));
        EXPECT_EQ(Journey.Boxes, bare.Boxes);
    }

  private:
    void Look() {
        if (!Journey.World.Program)
            return;
        Windows.Update();
        for (const TForm* form : Journey.World.Forms())
            if (QWidget* const window = Windows.Of(*form))
                for (const TControl* control : form->Controls())
                    Compare(*window, *control);
    }
    void Compare(QWidget& window, const TControl& control) {
        const QString name = QString::fromStdString(control.Name());
        SCOPED_TRACE(Journey.StepText() + ": " + control.Name());
        if (const auto* item = dynamic_cast<const TMenuItem*>(&control)) {
            if (const auto* action = window.findChild<QAction*>(name))
                CompareEntry(*action, *item);
            return;
        }
        QWidget* const widget = window.findChild<QWidget*>(name);
        if (widget == nullptr || dynamic_cast<const TTabSheet*>(&control) != nullptr)
            return;
        EXPECT_EQ(!widget->isHidden(), control.Visible());
        if (dynamic_cast<const TPanel*>(&control) == nullptr) {
            EXPECT_EQ(widget->isEnabledTo(widget->parentWidget()), control.Enabled());
        }
        CompareText(*widget, control);
        CompareRows(*widget, control);
    }
    // An entry is shown with one that is below it, and enabled as far as it is shown.
    static bool IsShown(const TMenuItem& item) {
        const auto shown = [](const TMenuItem& below) { return IsShown(below); };
        return item.Visible() && (item.Items.empty() || std::ranges::any_of(item.Items, shown));
    }
    static void CompareEntry(const QAction& action, const TMenuItem& item) {
        EXPECT_EQ(action.isVisible(), IsShown(item));
        EXPECT_EQ(action.isEnabled(), IsShown(item) && item.Enabled());
        EXPECT_EQ(action.isChecked(), item.Checked());
        EXPECT_EQ(action.text().toStdString(), item.Caption());
        EXPECT_EQ(action.shortcut().toString().toStdString(), item.ShortCut());
    }
    static void CompareGrid(const QTableView& view, const TStringGrid& grid) {
        const QAbstractItemModel& model = *view.model();
        const auto rows = static_cast<int>(grid.Cells.RowCount());
        EXPECT_EQ(model.rowCount(), std::max(rows - 1, 0));
        const int selected = grid.SelectedRow() < rows ? grid.SelectedRow() : -1; // a row that is there
        EXPECT_EQ(view.selectionModel()->hasSelection(), selected > 0);
        EXPECT_TRUE(selected < 1 || view.selectionModel()->isRowSelected(selected - 1));
        for (int column = 0; column < model.columnCount(); ++column)
            for (int row = 0; row < rows; ++row) {
                const std::string own =
                    grid.Cells.Cell(static_cast<std::size_t>(column), static_cast<std::size_t>(row));
                const bool drawn = grid.OnDrawCell && (row > 0 || own.empty());
                const QVariant shown =
                    row > 0 ? model.index(row - 1, column).data() : model.headerData(column, Qt::Horizontal);
                EXPECT_EQ(shown.toString().toStdString(), drawn ? grid.OnDrawCell(column, row).Text : own);
            }
    }
    static void CompareChoices(const QWidget& group, const TRadioGroup& radio) {
        const auto buttons = group.findChildren<QRadioButton*>();
        ASSERT_EQ(buttons.size(), std::ssize(radio.Items()));
        for (qsizetype i = 0; i < buttons.size(); ++i) {
            EXPECT_EQ(buttons[i]->text().replace("&&", "&").toStdString(),
                      radio.Items()[static_cast<std::size_t>(i)]);
            EXPECT_EQ(buttons[i]->isChecked(), radio.ItemIndex() == i);
        }
    }
    static void CompareText(const QWidget& widget, const TControl& control) {
        if (const auto label = As<QLabel, TCaptionControl>(widget, control)) {
            EXPECT_EQ(label->first.text().toStdString(), label->second.Caption());
        }
        if (const auto button = As<QAbstractButton, TCaptionControl>(widget, control)) {
            EXPECT_EQ(button->first.text().toStdString(), button->second.Caption());
        }
        if (const auto edit = As<QLineEdit, TEdit>(widget, control)) {
            EXPECT_EQ(edit->first.text().toStdString(), edit->second.Text());
        }
        if (const auto box = As<QCheckBox, TCheckBox>(widget, control)) {
            EXPECT_EQ(box->first.isChecked(), box->second.Checked());
        }
        if (const auto led = As<QWidget, TALed>(widget, control)) {
            const TColor color = led->second.TrueColor();
            const QString lit = QColor(color.Red(), color.Green(), color.Blue()).name();
            const QString told = widget.accessibleDescription(); // none before its first change
            EXPECT_EQ(told.isEmpty() ? "off, " + lit : told, (led->second.Value() ? "on, " : "off, ") + lit);
        }
        if (const auto bar = As<QProgressBar, TProgressBar>(widget, control)) {
            const auto& [view, model] = *bar;
            EXPECT_EQ(view.value(), std::clamp(model.Position(), view.minimum(), view.maximum()));
            EXPECT_EQ(view.maximum(), std::max(model.Max(), 1)); // never the endless bar
        }
    }
    static void CompareRows(const QWidget& widget, const TControl& control) {
        if (const auto grid = As<QTableView, TStringGrid>(widget, control))
            CompareGrid(grid->first, grid->second);
        if (const auto radio = As<QWidget, TRadioGroup>(widget, control))
            CompareChoices(widget, radio->second);
        if (const auto list = As<QListWidget, TItemsControl>(widget, control)) {
            EXPECT_EQ(static_cast<std::size_t>(list->first.count()), list->second.Items().size());
            EXPECT_EQ(list->first.currentRow(), list->second.ItemIndex());
        }
        if (const auto memo = As<QPlainTextEdit, TMemo>(widget, control)) {
            EXPECT_EQ(memo->first.toPlainText().toStdString(), Join(memo->second.Lines(), "\n"));
        }
        if (const auto tree = As<QTreeWidget, TTreeView>(widget, control)) {
            EXPECT_EQ(static_cast<std::size_t>(tree->first.topLevelItemCount()), tree->second.Nodes().size());
        }
        if (const auto tabs = As<QTabWidget, TPageControl>(widget, control)) {
            EXPECT_EQ(tabs->first.currentIndex(), tabs->second.ActivePageIndex());
        }
    }

    TJourneyCase Case; // to be played once more
    TJourney Journey;
    TWindows Windows{Journey.World};
    TScreenHands Hands{Windows, Journey};
    std::vector<std::string> Calls;
};

TEST(TJourneysOnScreen, EachWidgetShowsWhatItsControlHolds) {
    if (qgetenv("LC_ALL") != "C.UTF-8")
        GTEST_SKIP() << "once is enough";
    for (const auto& path : AllJourneys())
        for (TJourneyCase& one : ReadJourney(path)) {
            SCOPED_TRACE(one.Title);
            const TOnScreen played(one);
        }
}

} // namespace
} // namespace tidewell::test
