#pragma once

#include "core/IniFile.h"
#include "core/controls/Simple.h"
#include "core/ports/ITimers.h"
#include "link/Nabto.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace tidewell {

class TModbusPanel;

// Asks the questions of the profile one after the other, for ever: timerLogger is the pause between cycles,
// timerQuery the gap between questions. Each tick disables its own timer and enables the next at its end, so
// only one question is outstanding. A reply that is refused or has the wrong number of values throws the
// cycle away and starts it at question 0. Handlers that run during a question may stop, restart or replace
// the cycle, or take another device: the reply then counts for nothing. One that runs a loop of its own, as a
// dialog does, holds the question up: the cycle then begins anew below it, and what the question brings late
// counts for nothing either.
class TPollCycle {
  public:
    // device: address of the device in force, read at each use.
    TPollCycle(ITimers& timers, TUNabto& nabto, TModbusPanel& panel, const std::string& device,
               TLabel& lblNabto, TALed& ledNabto);

    // Both in ms.
    void SetIntervals(int pauseTime, int delayBetweenQuestions);
    void SetQuestions(TIniSection questions);

    void startLog();
    void stopLog();
    void ResetLogVariables();
    void timerLoggerTimer();
    // Throws EConvertError when the length field of the question is no number.
    void timerQueryTimer();

    // Poll questions, "<obj>;<command>;<address>;<length>;" by any name.
    TIniSection Questions;
    std::size_t queryCounter = 0;  // index of the next question
    std::string NabtoResultstring; // the replies of the cycle so far, joined
    bool flipflop = false;
    bool Dologging = false; // the cycle is to go on
    bool isLastResultError = false;
    std::unique_ptr<ITimer> timerLogger;
    std::unique_ptr<ITimer> timerQuery;
    // NabtoResultstring holds the values of a whole cycle; what this throws leaves the timer's handler with
    // the cycle ended, of which OnFailed tells first.
    TEvent<> OnCycleDone;
    TEvent<const std::string&> OnFailed; // the cycle has ended by an exception with that text
    TEvent<> OnEmptyCycle;               // all questions are through, if there are any, and ask for no value

  private:
    struct TQuestion;
    TQuestion ReadQuestion(std::size_t position) const;
    void AskNext();
    void FinishCycle();
    // Nothing when the answer is that of a former device, or comes after a newer question.
    std::optional<TValueList> Ask(const TQuestion& question);
    void TakeAnswer(std::size_t asked, const TQuestion& question, const TValueList& answer, bool current);
    void timerHeldUpTimer();
    void Restart();
    void StopTimersUnlessLogging();
    void ShowStatus(const char* state);

    TUNabto& Nabto;
    TModbusPanel& Panel;
    const std::string& Device;
    TLabel& LblNabto;
    TALed& LedNabto;
    std::unique_ptr<ITimer> timerHeldUp; // ticks while a question is outstanding and the event loop runs
    unsigned HeldUpTicks = 0;
    unsigned Run = 0;        // changes whenever the cycle is begun anew
    unsigned Starts = 0;     // changes whenever the timers are given to a new cycle
    unsigned Latest = 0;     // number of the question whose answer still counts
    std::string AskedDevice; // whom that question goes to
};

} // namespace tidewell
