#pragma once

#include "rig/Test.h"

// What goes to the library and the cloud, in words for people.
namespace tidewell::test {

// Of a request's JSON; empty without such a member.
std::string FieldOf(const std::string& json, const std::string& name);
// A call as the library tells it, "nabtoRpcInvoke nabto://...", in short: "setpointReadValue 410000000001
// 100,16,0". A packet of an image bears its number behind "#". Empty for what only frees memory or reads a
// stream.
std::string ShortCall(const std::string& call);
// Whether the call asks that question of a profile, "<obj>;<command>;<address>;<length>;".
bool IsQuestion(const std::string& call, const std::string& question);
// Calls in one line: what is repeated once, with its count, and packets that follow one another as a range.
std::string JoinCalls(const std::vector<std::string>& calls);

} // namespace tidewell::test
