#include "link/PollCycle.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "link/Nabto.h"
#include "model/ModbusPanel.h"

#include <algorithm>
#include <utility>

namespace tidewell {

struct TPollCycle::TQuestion {
    std::string Text; // empty at the end of the list
    std::string Obj, Command, Address, Length;
    std::int32_t Count = 0; // Length as a number: the values that the reply must hold
};

TPollCycle::TPollCycle(ITimers& timers, TUNabto& nabto, TModbusPanel& panel, const std::string& device,
                       TLabel& lblNabto, TALed& ledNabto, std::function<void()> cycleDone)
    : timerLogger(timers.CreateTimer()), timerQuery(timers.CreateTimer()), Nabto(nabto), Panel(panel),
      Device(device), LblNabto(lblNabto), LedNabto(ledNabto), CycleDone(std::move(cycleDone)) {
    timerLogger->SetHandler([this] { timerLoggerTimer(); });
    timerQuery->SetHandler([this] { timerQueryTimer(); });
    SetIntervals(2000, 50);
}

void TPollCycle::SetIntervals(int pauseTime, int delayBetweenQuestions) {
    timerLogger->SetInterval(pauseTime);
    timerQuery->SetInterval(delayBetweenQuestions);
}

void TPollCycle::SetQuestions(TIniSection questions) {
    Questions = std::move(questions);
    ResetLogVariables(); // what was gathered belongs to other questions
}

void TPollCycle::startLog() {
    timerQuery->SetEnabled(false);
    timerLogger->SetEnabled(true);
    ResetLogVariables();
    LedNabto.SetValue(true);
    ShowStatus("");
    Dologging = true;
    ++Starts;
}

void TPollCycle::stopLog() {
    Dologging = false;
    timerLogger->SetEnabled(false);
    timerQuery->SetEnabled(false);
    LedNabto.SetValue(false);
    ResetLogVariables();
    ShowStatus("");
}

void TPollCycle::ResetLogVariables() {
    Restart();
    ++Run;
}

void TPollCycle::timerLoggerTimer() {
    timerLogger->SetEnabled(false);
    flipflop = !flipflop;
    LedNabto.SetValue(flipflop);
    timerQuery->SetEnabled(true);
    ShowStatus(" -> Get Data");
}

void TPollCycle::timerQueryTimer() {
    timerQuery->SetEnabled(false);
    const std::size_t asked = queryCounter;
    const TQuestion question = ReadQuestion(asked);
    if (question.Text.empty()) {
        FinishCycle();
        return;
    }
    const unsigned run = Run;
    const unsigned starts = Starts;
    const std::string reply = Ask(question);
    // From here on a handler that ran during the question may have stopped, restarted or replaced the cycle.
    const bool current = run == Run;
    if (Questions.ValueAt(asked) == question.Text)
        Panel.SetResponse(asked, reply);
    if (reply == "error") {
        ShowStatus(" -> Error Com");
        LedNabto.SetTrueColor(TALed::Red);
        LedNabto.SetValue(true); // a blink that has just gone dark must not hide it
        if (current)
            Restart();
    } else {
        isLastResultError = false;
        LedNabto.SetTrueColor(TALed::Green);
        const bool complete = std::cmp_equal(std::ranges::count(reply, ';'), question.Count);
        if (current && complete) {
            ++queryCounter;
            NabtoResultstring += reply;
        } else if (current) {
            Restart();
        }
    }
    // A cycle that was started meanwhile goes on by its own timers, unless a failure has ended it.
    if (starts != Starts)
        return;
    timerQuery->SetEnabled(true);
    StopTimersUnlessLogging();
}

TPollCycle::TQuestion TPollCycle::ReadQuestion(std::size_t position) const {
    TQuestion question;
    question.Text = Questions.ValueAt(position);
    if (question.Text.empty())
        return question;
    auto fields = SplitStrictly(question.Text);
    fields.resize(std::max<std::size_t>(fields.size(), 4));
    question.Obj = fields[0];
    question.Command = Trim(fields[1]);
    question.Address = fields[2];
    question.Length = fields[3];
    const auto count = TryToInteger(question.Length);
    if (!count)
        throw EConvertError("Question " + Questions.Rows()[position].Name + "=" + question.Text + ": '" +
                            question.Length + "' is not a valid integer value");
    question.Count = *count;
    return question;
}

std::string TPollCycle::Ask(const TQuestion& question) {
    const char* query = nullptr;
    if (question.Command == "3")
        query = "setpointReadValue.json";
    else if (question.Command == "4")
        query = "datapointReadValue.json";
    else
        return question.Text; // nothing to send: the question stands for its reply
    const std::string request = TUNabto::ValueToJson(question.Address, question.Length, question.Obj);
    return Nabto.JsonToValue(Nabto.SendQuery(Device, query, request));
}

void TPollCycle::FinishCycle() {
    const unsigned starts = Starts;
    queryCounter = 0;
    if (NabtoResultstring.empty())
        OnEmptyCycle();
    else
        CycleDone();
    // A cycle that was started meanwhile has its own values and timers.
    if (starts != Starts)
        return;
    NabtoResultstring.clear();
    timerLogger->SetEnabled(true);
    ShowStatus(" -> Pause Data");
    StopTimersUnlessLogging();
}

void TPollCycle::Restart() {
    queryCounter = 0;
    NabtoResultstring.clear();
}

void TPollCycle::StopTimersUnlessLogging() {
    if (Dologging)
        return;
    timerLogger->SetEnabled(false);
    timerQuery->SetEnabled(false);
}

void TPollCycle::ShowStatus(const char* state) {
    LblNabto.SetCaption("ID : " + Device + state);
}

} // namespace tidewell
