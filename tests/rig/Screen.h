#pragma once

#include "rig/Test.h"

namespace tidewell {
class TControl;
class TForm;
class TProgram;
} // namespace tidewell

namespace tidewell::test {

// Whether a text goes behind another in a line of what is told: one that is too long anyway takes short ones.
bool Joins(const std::string& line, const std::string& text);

// What a person sees of a control, in words: what it is called there ("visible", "text", "row 3") and what it
// says.
using TControlText = std::map<std::string, std::string>;
TControlText TextOf(const TControl& control);

// What all forms of a program show, by form and control, in their order.
class TScreen {
  public:
    TScreen() = default; // nothing
    // The plot of the graph page counts as a control "graph" of the main form.
    TScreen(const std::vector<TForm*>& forms, const TProgram& program);

    // What is told otherwise than before, form by form; one form may be left out, or told alone, or one
    // control.
    std::vector<std::string> ChangesSince(const TScreen& before, const std::string& without = {},
                                          const std::string& only = {}) const;
    // All of a form, of one control or, without a name, of everything.
    std::vector<std::string> Tell(const std::string& name) const;
    bool IsEmpty() const { return Content.empty(); }
    // Counts what that control shows as told.
    void Take(const TControl& control);
    // Counts what that form shows there as told.
    void TakeForm(const std::string& name, const TScreen& from);

  private:
    using TNamed = std::pair<std::string, TControlText>;
    struct TFormText {
        std::string Name;
        std::vector<TNamed> Controls; // the form itself first, without a name
    };
    static std::vector<std::string> Lines(const std::string& form, const std::vector<std::string>& texts);

    std::vector<TFormText> Content;
};

} // namespace tidewell::test
