#include "support/WireText.h"

#include <cstddef>
#include <optional>

namespace tidewell::test {

namespace {

struct TSent {
    std::string Text; // of a packet: its state
    std::optional<int> Packet;
    std::size_t Size = 0;

    bool Follows(const TSent& other) const {
        return Packet && other.Packet && Text == other.Text && Size == other.Size &&
               *Packet == *other.Packet + 1;
    }
};

std::string Fields(const std::string& url, std::initializer_list<const char*> names) {
    std::string text;
    for (const char* name : names)
        text += (text.empty() ? "" : ",") + RequestField(url, name);
    return text;
}

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TSent SentQuery(const std::string& url) {
    const auto end = url.find(".json?");
    const std::string query = url.substr(0, end).substr(url.rfind('/', end) + 1);
    if (query == "setpointReadValue")
        return {"read " + Fields(url, {"address", "length", "obj"}), {}, 0};
    if (query == "prepareUpdate")
        return {"prepare " + Fields(url, {"fileid", "filesize", "crc32"}), {}, 0};
    if (query == "flashWrite")
        return {"flash " + Fields(url, {"address", "length"}), {}, 0};
    if (query == "admincmd")
        return {"admin " + Fields(url, {"cmd"}), {}, 0};
    const std::string state = RequestField(url, "nostreamstate");
    const std::string block = RequestField(url, "blocknumber");
    if (query == "FlashWriteNostreamV2")
        return {state, std::stoi(block), Count(url, "payload")};
    if (query == "FlashWriteNostream")
        return {state + (block == "0" ? "" : "@" + block), {}, 0};
    return {query, {}, 0};
}

} // namespace

std::string RequestField(const std::string& request, const std::string& name) {
    const auto at = request.find("\"" + name + "\":");
    if (at == std::string::npos)
        return {};
    std::string text = request.substr(at + name.size() + 3);
    text.resize(text.find_first_of(",}"));
    std::erase(text, '"');
    return text;
}

std::vector<std::string> WireText(std::span<const std::string> calls) {
    std::vector<TSent> sent;
    for (const std::string& call : calls) {
        if (call.starts_with("nabtoRpcInvoke "))
            sent.push_back(SentQuery(call));
        else if (call.starts_with("nabtoStreamOpen"))
            sent.push_back({"open", {}, 0});
        else if (call.starts_with("nabtoStreamWrite"))
            sent.push_back({"write" + call.substr(call.rfind(' ')), {}, 0});
        else if (call.starts_with("nabtoStreamClose"))
            sent.push_back({"close", {}, 0});
    }
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < sent.size(); ++i) {
        std::size_t last = i;
        while (last + 1 < sent.size() && sent[last + 1].Follows(sent[last]))
            ++last;
        std::string text = sent[i].Text;
        if (sent[i].Packet)
            text += " #" + std::to_string(*sent[i].Packet) +
                    (last == i ? "" : "-" + std::to_string(*sent[last].Packet)) + " x" +
                    std::to_string(sent[i].Size);
        texts.push_back(text);
        i = last;
    }
    return texts;
}

} // namespace tidewell::test
