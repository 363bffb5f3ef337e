#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace tidewell {

// Keeps a handler connected for as long as it lives. It may outlive the signal.
class TConnection {
  public:
    TConnection() = default;
    explicit TConnection(std::function<void()> disconnect) : Disconnect(std::move(disconnect)) {}
    TConnection(TConnection&& other) noexcept : Disconnect(std::exchange(other.Disconnect, nullptr)) {}
    TConnection& operator=(TConnection&& other) noexcept {
        if (this != &other) {
            Release();
            Disconnect = std::exchange(other.Disconnect, nullptr);
        }
        return *this;
    }
    TConnection(const TConnection&) = delete;
    TConnection& operator=(const TConnection&) = delete;
    ~TConnection() { Release(); }

    void Release() {
        if (auto disconnect = std::exchange(Disconnect, nullptr))
            disconnect();
    }

  private:
    std::function<void()> Disconnect;
};

// A list of handlers, run in the order of connecting. A handler may connect or disconnect any handler, itself
// too.
template <class... TArgs>
class TSignal {
  public:
    using THandler = std::function<void(TArgs...)>;

    [[nodiscard]] TConnection Connect(THandler handler) {
        const std::size_t id = Slots->NextId++;
        Slots->Handlers.emplace(id, std::make_shared<THandler>(std::move(handler)));
        return TConnection([weak = std::weak_ptr<TSlots>(Slots), id] {
            if (auto kept = weak.lock())
                kept->Handlers.erase(id);
        });
    }

    void Emit(TArgs... args) const {
        const auto kept = Slots;
        for (auto next = kept->Handlers.begin(); next != kept->Handlers.end();) {
            const std::size_t id = next->first;
            const auto handler = next->second;
            (*handler)(args...);
            next = kept->Handlers.upper_bound(id);
        }
    }

  private:
    struct TSlots {
        std::map<std::size_t, std::shared_ptr<THandler>> Handlers;
        std::size_t NextId = 0;
    };
    std::shared_ptr<TSlots> Slots = std::make_shared<TSlots>();
};

} // namespace tidewell
