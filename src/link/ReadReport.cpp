#include "link/ReadReport.h"

#include "link/DeviceQueries.h"
#include "link/NabtoStream.h"

#include <algorithm>
#include <numeric>

namespace tidewell {

void TReadPart::Take(const TStreamRead& read, const TDownloadTexts& texts) {
    Came = static_cast<std::uint32_t>(read.Bytes.size());
    if (Whole())
        return;
    switch (read.End) {
    case TStreamRead::EEnd::TimedOut:
        Reason = texts.TimedOut;
        return;
    case TStreamRead::EEnd::Ended:
        return; // of this nobody is told
    case TStreamRead::EEnd::Broken:
    case TStreamRead::EEnd::Failed:
    case TStreamRead::EEnd::Complete:
        Reason = texts.Broken;
    }
}

std::string RefusalReason(std::string_view reply, std::int32_t status, const TDownloadTexts& texts) {
    if (status == 0)
        return {};
    const TDeviceReply parsed = ParseReply(reply);
    if (reply.empty())
        return texts.NoAnswer;
    return parsed.Error ? FillText(texts.RefusedBecause, {*parsed.Error})
                        : FillText(texts.Refused, {std::to_string(status)});
}

bool TReadReport::Whole() const {
    return std::ranges::all_of(Parts, &TReadPart::Whole);
}

std::uint32_t TReadReport::Came() const {
    return std::accumulate(
        Parts.begin(), Parts.end(), std::uint32_t{0},
        [](std::uint32_t came, const TReadPart& part) { return came + part.Came; });
}

std::string TReadReport::Reason() const {
    const auto part = std::ranges::find_if_not(Parts, &TReadPart::Whole);
    return part == Parts.end() ? std::string() : part->Reason;
}

std::vector<std::string> TReadReport::Lines(const TDownloadTexts& texts) const {
    const bool blocks = !Parts.empty() && Parts.front().Unit > 1;
    std::uint32_t came = 0;
    std::uint32_t wanted = 0;
    std::vector<std::string> lines(1);
    for (const TReadPart& part : Parts) {
        const std::uint32_t whole = part.Came / part.Unit;
        const std::uint32_t all = (part.Wanted + part.Unit - 1) / part.Unit;
        came += whole;
        wanted += all;
        if (!part.Whole())
            lines.push_back(FillText(
                blocks ? texts.MissingBlocks : texts.MissingBytes,
                {std::to_string(part.First + whole), std::to_string(part.First + all - 1), part.Reason}));
    }
    lines.front() =
        FillText(blocks ? texts.Blocks : texts.Bytes, {std::to_string(came), std::to_string(wanted)});
    return lines;
}

std::string TReadReport::Text(const TDownloadTexts& texts) const {
    std::string text;
    for (const std::string& line : Lines(texts))
        text += (text.empty() ? "" : "\n") + line;
    return text;
}

} // namespace tidewell
