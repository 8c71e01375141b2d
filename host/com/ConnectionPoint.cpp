#include "host/com/ConnectionPoint.h"

#include <vector>

#include "host/com/Counted.h"
#include "host/com/Edge.h"

namespace kvo::com {
namespace {

struct Connection {
  Pointer<IPropertyNotifySink> sink;
  DWORD cookie;
};

// Copies an element, with a reference for the caller.
IConnectionPoint* Copied(Pointer<IConnectionPoint> point) { return point.Detach(); }
CONNECTDATA Copied(Connection connection) { return {connection.sink.Detach(), connection.cookie}; }

// An enumerator of COM elements that returns copies.
template <class Interface, class Element, class Held>
class List final : public Counted<Interface> {
 public:
  explicit List(std::vector<Held> held, std::size_t next = 0)
      : held_(std::move(held)), next_(next) {}
  HRESULT STDMETHODCALLTYPE Next(ULONG count, Element* elements, ULONG* fetched) noexcept override {
    if (fetched != nullptr) *fetched = 0;
    if (elements == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
    for (ULONG i = 0; i < count; ++i) elements[i] = {};
    ULONG done = 0;
    for (; done < count && next_ < held_.size(); ++done) elements[done] = Copied(held_[next_++]);
    if (fetched != nullptr) *fetched = done;
    return done == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override {
    const bool enough = count <= held_.size() - next_;
    next_ = enough ? next_ + count : held_.size();
    return enough ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() noexcept override {
    next_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(Interface** copy) noexcept override {
    if (!Clear(copy)) return E_POINTER;
    return Boundary({}, [&] { *copy = new List(held_, next_); });
  }

 private:
  std::vector<Held> held_;
  std::size_t next_;
};

}  // namespace

HRESULT ConnectionPoint::QueryInterface(REFIID iid, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  const bool known = iid == IID_IUnknown || iid == IID_IConnectionPoint;
  *object = known ? this : nullptr;
  if (!known) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT ConnectionPoint::GetConnectionInterface(IID* iid) noexcept {
  if (!Clear(iid)) return E_POINTER;
  *iid = IID_IPropertyNotifySink;
  return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(
    IConnectionPointContainer** container) noexcept {
  if (!Clear(container)) return E_POINTER;
  *container = &container_;
  container_.AddRef();
  return S_OK;
}

HRESULT ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) noexcept {
  if (!Clear(cookie) || sink == nullptr) return E_POINTER;
  return Boundary({}, [&] {
    auto connected = Pointer<IPropertyNotifySink>::Query(sink);
    if (!connected) return CONNECT_E_CANNOTCONNECT;
    sinks_.emplace(++lastCookie_, std::move(connected));
    *cookie = lastCookie_;
    return S_OK;
  });
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) noexcept {
  return Boundary({}, [&] {
    const auto node = sinks_.extract(cookie);  // releasing the sink may call back
    return node.empty() ? CONNECT_E_NOCONNECTION : S_OK;
  });
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** connections) noexcept {
  if (!Clear(connections)) return E_POINTER;
  return Boundary({}, [&] {
    std::vector<Connection> now;
    for (const auto& [cookie, sink] : sinks_) now.push_back({sink, cookie});
    *connections = new List<IEnumConnections, CONNECTDATA, Connection>(std::move(now));
  });
}

IEnumConnectionPoints* NewConnectionPointList(IConnectionPoint* point) {
  using Points = std::vector<Pointer<IConnectionPoint>>;
  return new List<IEnumConnectionPoints, IConnectionPoint*, Pointer<IConnectionPoint>>(
      Points(1, Pointer<IConnectionPoint>(point)));
}

}  // namespace kvo::com
