#include "graph/SLDisplayChannel.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"

#include <algorithm>
#include <limits>

namespace tidewell {

namespace {

constexpr std::string_view SuffixMark = ":[";
constexpr std::size_t SuffixRoom = 20; // characters behind the mark that a new value replaces

// What lies behind that many UTF-8 characters.
std::string_view BehindCharacters(std::string_view text, std::size_t count) {
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        const bool startsCharacter = (static_cast<unsigned char>(text[at]) & 0xC0U) != 0x80U;
        if (startsCharacter && count-- == 0)
            break;
    }
    return text.substr(at);
}

} // namespace

std::string WithoutValue(std::string_view name, std::size_t characters) {
    const auto mark = name.find(SuffixMark);
    if (mark == std::string_view::npos)
        return std::string(name);
    // The mark counts among the characters that are cut.
    std::string base(name.substr(0, mark));
    base += BehindCharacters(name.substr(mark), characters);
    return base;
}

std::int32_t Truncated(double value) {
    constexpr auto limits = std::numeric_limits<std::int32_t>();
    if (!(value > limits.min()))
        return limits.min();
    return value < limits.max() ? static_cast<std::int32_t>(value) : limits.max();
}

void TSLChannelData::Clear() {
    Content.clear();
    Redraw.Touch();
}

void TSLChannelData::AddXYPoint(double x, double y) {
    Content.push_back({x, y});
    Redraw.Touch();
}

void TSLChannelData::AddYPoint(double y) {
    AddXYPoint(Content.empty() ? 0 : Content.back().X + 1, y);
}

void TSLChannelData::DropFrom(double x) {
    if (Content.empty() || Content.back().X < x)
        return;
    while (!Content.empty() && Content.back().X >= x)
        Content.pop_back();
    Redraw.Touch();
}

void TSLChannelData::GetDrawYData(double* buffer) const {
    std::transform(
        Content.begin(), Content.end(), buffer, [](const TSLPoint& point) { return point.Y; });
}

const std::string& TSLDisplayChannel::Name() const {
    if (ComposedIsOld) {
        Composed = Base;
        Composed += SuffixMark;
        if (Suffix == ESuffix::Bits) {
            Composed += BinaryString(Truncated(Value) & 0xFFFF, 16).insert(8, " ");
        } else {
            Composed += Tail;
            Composed += FixedText(Value, 2);
        }
        Composed += ']';
        ComposedIsOld = false;
    }
    return Composed;
}

void TSLDisplayChannel::SetName(std::string_view name) {
    Suffix = ESuffix::None;
    Composed = name;
    ComposedIsOld = false;
    Redraw.TouchNames();
}

void TSLDisplayChannel::ShowValue(double value) {
    if (Suffix != ESuffix::Value || !Tail.empty()) {
        const std::string_view name = Name();
        const auto mark = name.find(SuffixMark);
        Base = name.substr(0, mark);
        Tail = mark == std::string_view::npos
                   ? std::string_view()
                   : BehindCharacters(name.substr(mark + SuffixMark.size()), SuffixRoom);
    }
    Suffix = ESuffix::Value;
    Value = value;
    ComposedIsOld = true;
    Redraw.TouchNames();
}

void TSLDisplayChannel::ShowBits(std::string_view base, double value) {
    Base = base;
    Suffix = ESuffix::Bits;
    Value = value;
    ComposedIsOld = true;
    Redraw.TouchNames();
}

TSLDisplayChannel& TSLDisplayChannels::Add() {
    Redraw.Touch();
    return Content.emplace_back(Redraw);
}

void TSLDisplayChannels::Clear() {
    Content.clear();
    Redraw.Replace();
}

TSLDisplayChannel& TSLDisplayChannels::operator[](std::size_t index) {
    if (index >= Content.size())
        throw EListError("List index out of bounds (" + std::to_string(index) + ")");
    return Content[index];
}

const TSLDisplayChannel& TSLDisplayChannels::operator[](std::size_t index) const {
    if (index >= Content.size())
        throw EListError("List index out of bounds (" + std::to_string(index) + ")");
    return Content[index];
}

} // namespace tidewell
