#include "rig/Screen.h"

#include "mainform/Program.h"
#include "rig/Test.h"
#include "sim/controller/Firmware.h"

namespace tidewell::test {

namespace {

constexpr std::size_t width = 150;  // of a line
constexpr std::size_t listed = 8;   // rows of a long list, from its start
constexpr std::size_t written = 90; // lines of a memo

std::string Quoted(std::string text) {
    for (const auto& [raw, shown] : {std::pair{'\n', "\\n"}, {'\r', "\\r"}, {'\t', "\\t"}})
        for (std::size_t at = 0; (at = text.find(raw)) != std::string::npos;)
            text.replace(at, 1, shown);
    return "\"" + text + "\"";
}

std::string Hex(TColor color) {
    char text[16];
    std::snprintf(text, sizeof text, "#%06x", static_cast<unsigned>(color.Value) & 0xFFFFFFU);
    return text;
}

std::string Number(double value) {
    char text[32]; // the same in every locale
    return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::general, 10).ptr};
}

template <class TRows, class TText>
std::string List(const TRows& rows, TText text, std::size_t most = listed) {
    std::string all;
    for (std::size_t i = 0; i < rows.size() && i < most; ++i)
        all += (i == 0 ? "" : " | ") + text(rows[i]);
    return rows.size() > most ? all + " | ... " + std::to_string(rows.size()) : all;
}

std::string Same(const std::string& text) {
    return text;
}

void TellCaption(const TControl& control, TControlText& told) {
    if (const auto* caption = dynamic_cast<const TCaptionControl*>(&control))
        told["caption"] = Quoted(caption->Caption());
    if (const auto* button = dynamic_cast<const TButton*>(&control); button && button->Color())
        told["colour"] = Hex(*button->Color());
    if (const auto* box = dynamic_cast<const TCheckBox*>(&control))
        told["checked"] = box->Checked() ? "checked" : "unchecked";
    if (const auto* item = dynamic_cast<const TMenuItem*>(&control)) {
        if (item->Checkable())
            told["checked"] = item->Checked() ? "checked" : "unchecked";
        if (!item->ShortCut().empty())
            told["key"] = item->ShortCut();
    }
    if (const auto* form = dynamic_cast<const TForm*>(&control); form && form->ClientWidth() != 0)
        told["size"] = std::to_string(form->ClientWidth()) + "x" + std::to_string(form->ClientHeight());
}

void TellField(const TControl& control, TControlText& told) {
    if (const auto* edit = dynamic_cast<const TEdit*>(&control)) {
        told["text"] = Quoted(edit->Masked() ? std::string(edit->Text().size(), '*') : edit->Text());
        told["change"] = edit->ReadOnly() ? "read-only" : "writable";
        told["length"] = edit->MaxLength() == 0 ? "any length" : "up to " + std::to_string(edit->MaxLength());
    }
    if (const auto* mask = dynamic_cast<const TMaskEdit*>(&control))
        told["text"] = Quoted(mask->Text());
    if (const auto* bar = dynamic_cast<const TProgressBar*>(&control))
        told["position"] = std::to_string(bar->Position()) + "/" + std::to_string(bar->Max());
    if (const auto* bar = dynamic_cast<const TScrollBar*>(&control))
        told["position"] = std::to_string(bar->Position()) + "/" + std::to_string(bar->Max()) + " page " +
                           std::to_string(bar->PageSize());
    if (const auto* bar = dynamic_cast<const TTrackBar2*>(&control)) {
        told["position"] = std::to_string(bar->LowerPosition()) + "-" + std::to_string(bar->UpperPosition()) +
                           " of " + std::to_string(bar->Min()) + "-" + std::to_string(bar->Max());
        told["scale"] =
            "ticks " + std::to_string(bar->Frequency()) + " page " + std::to_string(bar->PageSize());
    }
    if (const auto* led = dynamic_cast<const TALed*>(&control)) // it blinks: only its colour tells
        told["colour"] = led->TrueColor() == TALed::Red ? "red" : "green";
    if (const auto* image = dynamic_cast<const TImage*>(&control))
        told["picture"] = std::to_string(image->Bytes().size()) + " bytes";
}

void TellRows(const TControl& control, TControlText& told) {
    if (const auto* items = dynamic_cast<const TItemsControl*>(&control)) {
        told["rows"] = "rows " + List(items->Items(), Same);
        told["selected"] = "@" + std::to_string(items->ItemIndex());
    }
    if (const auto* colors = dynamic_cast<const TColorList*>(&control))
        told["rows"] =
            "rows " + List(colors->Rows(), [](auto& row) { return row.Caption + " " + Hex(row.Color); });
    if (const auto* memo = dynamic_cast<const TMemo*>(&control))
        for (std::size_t i = 0; i < memo->Lines().size(); ++i)
            if (memo->Lines()[i] != "Clear Graph execute") // which the graph tells
                told["line " + std::to_string(100000 + i)] = Quoted(memo->Lines()[i]);
    if (const auto* tree = dynamic_cast<const TTreeView*>(&control)) {
        told["nodes"] = List(tree->Nodes(),
                             [](auto& node) { return node.Text + " (" + List(node.Children, Same) + ")"; });
        if (const auto selected = tree->Selected())
            told["selected"] = "@" + std::to_string(selected->Root) + "." + std::to_string(selected->Child);
    }
    if (const auto* pages = dynamic_cast<const TPageControl*>(&control)) {
        const auto active = static_cast<std::size_t>(pages->ActivePageIndex());
        told["page"] = active < pages->Pages.size() ? "on " + pages->Pages[active].get().Name() : "on none";
    }
    if (const auto* panel = dynamic_cast<const TCategoryPanel*>(&control))
        told["collapsed"] = panel->Collapsed() ? "collapsed" : "open";
    if (const auto* bar = dynamic_cast<const TStatusBar*>(&control))
        for (std::size_t i = 0; i < bar->Panels().size(); ++i) {
            told["panel " + std::to_string(i)] = Quoted(bar->Panels()[i].Text);
            told["panel " + std::to_string(i) + " width"] =
                std::to_string(bar->Panels()[i].Width) +
                (bar->Panels()[i].Centred ? " wide, centred" : " wide");
        }
}

void TellGrid(const TControl& control, TControlText& told) {
    const auto* grid = dynamic_cast<const TStringGrid*>(&control);
    if (grid == nullptr)
        return;
    told["rows"] = std::to_string(grid->Cells.RowCount()) + "x" + std::to_string(grid->Cells.ColCount());
    for (std::size_t row = 0; row < grid->Cells.RowCount(); ++row) {
        std::string text;
        for (std::size_t column = 0; column < grid->Cells.ColCount(); ++column) {
            TCellLook look{grid->Cells.Cell(column, row), false, false, {}};
            if (grid->OnDrawCell)
                look = grid->OnDrawCell(static_cast<int>(column), static_cast<int>(row));
            text += (column == 0 ? "" : " | ") + look.Text;
            if (look.Box)
                text += *look.Box ? "[x]" : "[ ]";
            if (look.Selected && column == 0)
                text += " <";
        }
        told["row " + std::to_string(1000 + row)] = text;
    }
    told["selected"] = "@" + std::to_string(grid->SelectedRow());
}

// A cycle that runs goes through two states without end: neither is told.
void Calm(const std::string& name, TControlText& told) {
    if (name == "LblNabto")
        for (const std::string state : {" -> Get Data", " -> Pause Data"})
            if (const auto at = told["caption"].find(state); at != std::string::npos)
                told["caption"].erase(at, state.size());
}

// The points of the first curve, if they are not all samples.
std::string DrawnText(const TSLScope& graph, std::size_t samples) {
    if (graph.Channels.Count() == 0 || graph.Channels[0].Data.GetSize() == samples)
        return {};
    const auto& points = graph.Channels[0].Data.Points();
    if (points.empty())
        return "none drawn";
    return std::to_string(points.size()) + " drawn, " + Number(points.front().X) + " to " +
           Number(points.back().X);
}

TControlText TextOfGraph(const TGraphPage& page) {
    const TSLScope& graph = page.graph;
    std::vector<std::string> names;
    std::vector<std::string> last;
    std::size_t shown = 0;
    const std::size_t samples = page.GraphSampleCount();
    for (std::size_t i = 0; i < graph.Channels.Count(); ++i) {
        const std::string& name = graph.Channels[i].Name(); // the live value stands behind ":["
        names.push_back(name.substr(0, name.find(":[")) + " " + Hex(graph.Channels[i].Color()));
        shown += graph.Channels[i].Visible() ? 1U : 0U;
        if (samples > 0)
            last.push_back(Number(page.DataLogDataValues.At(i, samples - 1)));
    }
    std::vector<std::string> labels; // of the times; dates stand lower
    for (const TSLScopeTextLabel& label : graph.Labels)
        if (label.Visible() && label.Position().Y > 0.04)
            labels.push_back(label.Name() + "@" + Number(label.Position().X));
    const TSLZoomRect rect = graph.ShownRect();
    TControlText told{{"channels", "curves " + List(names, Same)},
                      {"shown", std::to_string(shown) + " curves shown"},
                      {"samples", std::to_string(samples) + " samples"},
                      {"values", List(last, Same, 4)},
                      {"x", "x " + Number(rect.X.Lower) + " to " + Number(rect.X.Upper)},
                      {"y", "y " + Number(rect.Y[0].Lower) + " to " + Number(rect.Y[0].Upper)},
                      {"hold", graph.Hold() ? "held" : "moving"},
                      {"tools", graph.ToolBar.Visible() ? "tool bar" : "no tool bar"}};
    if (!labels.empty())
        told["labels"] = "labels " + List(labels, Same);
    if (const std::string drawn = DrawnText(graph, samples); !drawn.empty())
        told["drawn"] = drawn;
    return told;
}

std::string Told(const std::string& name, const std::vector<std::string>& texts) {
    std::string text = name;
    for (const std::string& part : texts)
        text += (text.empty() ? "" : " ") + part;
    return text;
}

// What is told otherwise; of a memo the lines that came.
std::optional<std::string> Difference(const std::string& name, const TControlText& before,
                                      const TControlText& now) {
    std::vector<std::string> texts;
    static const std::set<std::string> unsaid{"shown", "enabled", "writable", "any length", "\"\""};
    for (const auto& [key, text] : now)
        if (const auto old = before.find(key); old == before.end() || old->second != text)
            if (!before.empty() || !unsaid.contains(text))
                texts.push_back(text);
    for (const auto& [key, text] : before)
        if (!now.contains(key) && !key.starts_with("row") && !key.starts_with("line"))
            texts.push_back("no " + key);
    const auto lines = static_cast<std::size_t>(std::ranges::count_if(now, [&before](auto& text) {
        return text.first.starts_with("line") && !before.contains(text.first);
    }));
    if (lines == texts.size() && lines > listed) { // of a long report the start and the end
        std::string all;
        for (const std::string& text : texts)
            all += text;
        texts = {texts[0], texts[1], texts[2],
                 "... " + std::to_string(lines) + " lines, crc " + std::to_string(Crc32(all)), texts.back()};
    }
    const bool emptied = now.size() < before.size() && texts.empty();
    if (texts.empty() && !emptied)
        return std::nullopt;
    const auto rows = static_cast<std::size_t>(
        std::ranges::count_if(texts, [](auto& text) { return text.find(" | ") != std::string::npos; }));
    if (rows > listed && rows + 4 > texts.size()) { // of a long table the start and the end
        texts.erase(texts.begin() + 4, texts.end() - 2);
        texts.insert(texts.begin() + 4, "... " + std::to_string(rows) + " rows");
    }
    if (texts.size() > written && now.contains("line 100000")) {
        const std::string count = "... " + std::to_string(texts.size()) + " lines";
        texts.erase(texts.begin() + 2, texts.end() - 2);
        texts.insert(texts.begin() + 2, count);
    }
    return Told(name, emptied ? std::vector<std::string>{"shortened"} : texts);
}

} // namespace

bool Joins(const std::string& line, const std::string& text) {
    return line.size() + text.size() <= width || (line.size() > width && text.size() <= width / 3);
}

TControlText TextOf(const TControl& control) {
    TControlText told{{"shown", control.Visible() ? "shown" : "hidden"},
                      {"usable", control.Enabled() ? "enabled" : "disabled"}};
    if (!control.Hint().empty())
        told["hint"] = "hint " + Quoted(control.Hint());
    TellCaption(control, told);
    TellField(control, told);
    TellRows(control, told);
    TellGrid(control, told);
    return told;
}

TScreen::TScreen(const std::vector<TForm*>& forms, const TProgram& program) {
    for (const TForm* form : forms) {
        TFormText told{form->Name(), {{"", TextOf(*form)}}};
        for (const TControl* control : form->Controls())
            told.Controls.emplace_back(control->Name(), TextOf(*control));
        if (program.NabtoDevice.Cycle.Dologging)
            for (auto& [name, text] : told.Controls)
                Calm(name, text);
        if (form == &program.FormMain)
            told.Controls.emplace_back("graph", TextOfGraph(program.GraphPage));
        Content.push_back(std::move(told));
    }
}

std::vector<std::string> TScreen::Lines(const std::string& form, const std::vector<std::string>& texts) {
    std::vector<std::string> lines;
    for (const std::string& text : texts)
        if (lines.empty() || !Joins(lines.back(), text))
            lines.push_back(form + ": " + text);
        else
            lines.back() += "; " + text;
    return lines;
}

namespace {

// Takes out what only went out of use, or came back: of the many that an action takes from the user, and
// gives back, the first and the last are told.
std::optional<std::string> Together(std::vector<std::vector<std::string>>& forms, const std::string& state) {
    const auto is = [&state](const std::string& text) {
        return text.ends_with(state) && text.find(' ') == text.size() - state.size();
    };
    std::vector<std::string> found;
    for (const auto& texts : forms)
        std::ranges::copy_if(texts, std::back_inserter(found), is);
    if (found.size() < 3)
        return std::nullopt;
    for (auto& texts : forms)
        std::erase_if(texts, is);
    return found.front().substr(0, found.front().find(' ')) + " ... " + found.back() + " (" +
           std::to_string(found.size()) + ")";
}

} // namespace

std::vector<std::string> TScreen::Tell(const std::string& name) const {
    return ChangesSince({}, {}, name);
}

std::vector<std::string> TScreen::ChangesSince(const TScreen& before, const std::string& without,
                                               const std::string& only) const {
    std::vector<std::vector<std::string>> forms(Content.size());
    for (std::size_t i = 0; i < Content.size(); ++i) {
        if (Content[i].Name == without)
            continue;
        for (std::size_t k = 0; k < Content[i].Controls.size(); ++k) {
            const auto& [name, now] = Content[i].Controls[k];
            if (!only.empty() && only != Content[i].Name && only != name)
                continue;
            const bool isNew = i >= before.Content.size() || k >= before.Content[i].Controls.size();
            if (auto text =
                    Difference(name, isNew ? TControlText() : before.Content[i].Controls[k].second, now))
                forms[i].push_back(std::move(*text));
        }
    }
    std::vector<std::string> lines;
    for (const char* state : {" disabled", " enabled"})
        if (auto line = Together(forms, state))
            lines.push_back(std::move(*line));
    for (std::size_t i = 0; i < Content.size(); ++i)
        for (std::string& line : Lines(Content[i].Name, forms[i])) {
            if (!lines.empty() && Joins(lines.back(), line))
                lines.back() += "; " + line;
            else
                lines.push_back(std::move(line));
        }
    return lines;
}

void TScreen::TakeForm(const std::string& name, const TScreen& from) {
    for (std::size_t i = 0; i < Content.size(); ++i)
        if (Content[i].Name == name)
            Content[i] = from.Content[i];
}

void TScreen::Take(const TControl& control) {
    for (TFormText& form : Content)
        for (auto& [name, told] : form.Controls)
            if (name == control.Name())
                told = TextOf(control);
}

} // namespace tidewell::test
