#include "link/PollCycle.h"

#include "core/AtExit.h"
#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "model/ModbusPanel.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace tidewell {

namespace {

// The event loop runs for a moment before and after a request. A second whole interval within one of them
// means that a handler has a loop of its own. ms; longer than such a moment.
constexpr int heldUpInterval = 100;
constexpr unsigned heldUpTicks = 2;

} // namespace

struct TPollCycle::TQuestion {
    std::string Text; // empty at the end of the list
    std::string Obj, Command, Address, Length;
    std::int32_t Count = 0; // Length as a number: the values that the reply must hold
};

TPollCycle::TPollCycle(ITimers& timers, TUNabto& nabto, TModbusPanel& panel, const std::string& device,
                       TLabel& lblNabto, TALed& ledNabto)
    : timerLogger(timers.CreateTimer()), timerQuery(timers.CreateTimer()), Nabto(nabto), Panel(panel),
      Device(device), LblNabto(lblNabto), LedNabto(ledNabto), timerHeldUp(timers.CreateTimer()) {
    timerLogger->SetHandler([this] { timerLoggerTimer(); });
    timerQuery->SetHandler([this] { timerQueryTimer(); });
    timerHeldUp->SetHandler([this] { timerHeldUpTimer(); });
    timerHeldUp->SetInterval(heldUpInterval);
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
    timerHeldUp->SetEnabled(false); // a question that is still outstanding holds nothing up any more
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
    const unsigned starts = Starts;
    try {
        AskNext();
    } catch (const std::exception& error) {
        if (starts == Starts) {
            Dologging = false;
            StopTimersUnlessLogging();
            OnFailed(error.what());
        }
        throw;
    }
}

void TPollCycle::AskNext() {
    timerQuery->SetEnabled(false);
    if (AskedDevice != Device)
        Restart(); // the answers so far are those of another device
    const std::size_t asked = queryCounter;
    const TQuestion question = ReadQuestion(asked);
    if (question.Text.empty()) {
        FinishCycle();
        return;
    }
    const unsigned run = Run;
    const unsigned starts = Starts;
    // From here on a handler that runs during the question may stop, restart or replace the cycle.
    if (const auto answer = Ask(question))
        TakeAnswer(asked, question, *answer, run == Run);
    // A cycle that was started meanwhile goes on by its own timers, unless a failure has ended it.
    if (starts != Starts)
        return;
    timerQuery->SetEnabled(true);
    StopTimersUnlessLogging();
}

void TPollCycle::TakeAnswer(std::size_t asked, const TQuestion& question, const TValueList& answer,
                            bool current) {
    if (Questions.ValueAt(asked) == question.Text)
        Panel.SetResponse(asked, answer.Text);
    if (answer.Text == "error") {
        ShowStatus(" -> Error Com");
        LedNabto.SetTrueColor(TALed::Red);
        LedNabto.SetValue(true); // a blink that has just gone dark must not hide it
        if (current)
            Restart();
        return;
    }
    isLastResultError = false;
    LedNabto.SetTrueColor(TALed::Green);
    if (!current)
        return;
    if (answer.HasData && std::cmp_equal(std::ranges::count(answer.Text, ';'), question.Count)) {
        ++queryCounter;
        NabtoResultstring += answer.Text;
    } else {
        Restart();
    }
}

void TPollCycle::timerHeldUpTimer() {
    timerHeldUp->SetEnabled(false);
    if (++HeldUpTicks < heldUpTicks) {
        timerHeldUp->SetEnabled(true); // a whole interval: the first tick may have waited behind the request
        return;
    }
    if (!Dologging)
        return; // a stop takes effect once the question is over
    ++Latest;
    ++Starts;
    ResetLogVariables();
    timerQuery->SetEnabled(true);
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

std::optional<TValueList> TPollCycle::Ask(const TQuestion& question) {
    AskedDevice = Device;
    const unsigned number = ++Latest;
    const char* query = nullptr;
    if (question.Command == "3")
        query = "setpointReadValue.json";
    else if (question.Command == "4")
        query = "datapointReadValue.json";
    else
        return TValueList{question.Text, true}; // nothing to send: the question stands for its reply
    const std::string request = TUNabto::ValueToJson(question.Address, question.Length, question.Obj);
    const auto counts = [this, number] { return number == Latest && AskedDevice == Device; };
    HeldUpTicks = 0;
    timerHeldUp->SetEnabled(true);
    const TAtExit answered([this] { timerHeldUp->SetEnabled(false); });
    const std::string reply = Nabto.SendQuery(Device, query, request, [this, &counts] {
        const bool wanted = counts();
        if (wanted)
            HeldUpTicks = 0;
        return wanted;
    });
    if (!counts())
        return std::nullopt;
    return Nabto.ReadValueList(reply);
}

void TPollCycle::FinishCycle() {
    const unsigned starts = Starts;
    queryCounter = 0;
    if (NabtoResultstring.empty())
        OnEmptyCycle();
    else
        OnCycleDone();
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
