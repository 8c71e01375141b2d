#include "host/com/ConnectionPoint.h"

#include <vector>

#include "host/com/Counted.h"
#include "host/com/Edge.h"

namespace kvo::com {
namespace {

// A walk over COM elements, each of which is copied out with a reference for the caller.
template <class Interface, class Element>
class List : public Counted<Interface> {
 public:
  HRESULT STDMETHODCALLTYPE Next(ULONG count, Element* elements, ULONG* fetched) noexcept override {
    if (fetched != nullptr) *fetched = 0;
    if (elements == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
    for (ULONG i = 0; i < count; ++i) elements[i] = {};
    ULONG done = 0;
    for (; done < count && next_ < Size(); ++done) elements[done] = Copy(next_++);
    if (fetched != nullptr) *fetched = done;
    return done == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override {
    const bool enough = count <= Size() - next_;
    next_ = enough ? next_ + count : Size();
    return enough ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() noexcept override {
    next_ = 0;
    return S_OK;
  }

 protected:
  std::size_t next_ = 0;

 private:
  virtual std::size_t Size() const = 0;
  virtual Element Copy(std::size_t at) const = 0;
};

class PointList final : public List<IEnumConnectionPoints, IConnectionPoint*> {
 public:
  explicit PointList(IConnectionPoint* point, std::size_t next) : point_(point) { next_ = next; }
  HRESULT STDMETHODCALLTYPE Clone(IEnumConnectionPoints** copy) noexcept override {
    if (!Clear(copy)) return E_POINTER;
    return Boundary({}, [&] { *copy = new PointList(point_.get(), next_); });
  }

 private:
  std::size_t Size() const override { return 1; }
  IConnectionPoint* Copy(std::size_t) const override {
    return Pointer<IConnectionPoint>(point_).Detach();
  }
  Pointer<IConnectionPoint> point_;
};

struct Connection {
  Pointer<IPropertyNotifySink> sink;
  DWORD cookie;
};

class ConnectionList final : public List<IEnumConnections, CONNECTDATA> {
 public:
  ConnectionList(std::vector<Connection> connections, std::size_t next)
      : connections_(std::move(connections)) {
    next_ = next;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumConnections** copy) noexcept override {
    if (!Clear(copy)) return E_POINTER;
    return Boundary({}, [&] { *copy = new ConnectionList(connections_, next_); });
  }

 private:
  std::size_t Size() const override { return connections_.size(); }
  CONNECTDATA Copy(std::size_t at) const override {
    return {Pointer<IPropertyNotifySink>(connections_[at].sink).Detach(), connections_[at].cookie};
  }
  std::vector<Connection> connections_;
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
    const auto node = sinks_.extract(cookie);  // the sink may answer its release
    return node.empty() ? CONNECT_E_NOCONNECTION : S_OK;
  });
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** connections) noexcept {
  if (!Clear(connections)) return E_POINTER;
  return Boundary({}, [&] {
    std::vector<Connection> now;
    for (const auto& [cookie, sink] : sinks_) now.push_back({sink, cookie});
    *connections = new ConnectionList(std::move(now), 0);
  });
}

IEnumConnectionPoints* NewConnectionPointList(IConnectionPoint* point) {
  return new PointList(point, 0);
}

}  // namespace kvo::com
