#include "host/com/ControlObject.h"

#include "host/com/Text.h"
#include "host/com/Values.h"

namespace kvo::com {

ControlObject::ControlObject(const RegisteredControl& registered, IUnknown* outer)
    : Identity(outer),
      state_(registered, *this),
      dispatch_(state_),
      persistence_(state_),
      info_(state_),
      pages_(state_),
      view_(state_),
      inPlace_(state_),
      ole_(state_, inPlace_, persistence_) {
  SetIdentity(*state_.control, &dispatch_);
}

ControlObject::~ControlObject() { ForgetIdentity(*state_.control); }

void* ControlObject::Find(REFIID iid) {
  const auto is = [&iid](auto... ids) { return (... || (iid == ids)); };
  if (is(IID_IDispatch, ToGuid(kRuntimeTextInterfaceId), ToGuid(state_.registered.interfaceId)))
    return static_cast<IDispatch*>(&dispatch_);
  if (is(IID_IPersist, IID_IPersistPropertyBag))
    return static_cast<IPersistPropertyBag*>(&persistence_);
  if (is(IID_IPersistStreamInit)) return static_cast<IPersistStreamInit*>(&persistence_);
  if (is(IID_IOleObject)) return static_cast<IOleObject*>(&ole_);
  if (is(IID_IOleControl)) return static_cast<IOleControl*>(&ole_);
  if (is(IID_IOleWindow, IID_IOleInPlaceObject)) return static_cast<IOleInPlaceObject*>(&inPlace_);
  if (is(IID_IOleInPlaceActiveObject)) return static_cast<IOleInPlaceActiveObject*>(&inPlace_);
  if (is(IID_IViewObject, IID_IViewObject2)) return static_cast<IViewObject2*>(&view_);
  if (is(IID_ISpecifyPropertyPages)) return static_cast<ISpecifyPropertyPages*>(&pages_);
  if (is(IID_IPerPropertyBrowsing)) return static_cast<IPerPropertyBrowsing*>(&pages_);
  if (is(IID_IProvideClassInfo, IID_IProvideClassInfo2))
    return static_cast<IProvideClassInfo2*>(&info_);
  if (is(IID_ISupportErrorInfo)) return static_cast<ISupportErrorInfo*>(&info_);
  if (is(IID_IConnectionPointContainer)) return static_cast<IConnectionPointContainer*>(&info_);
  return nullptr;
}

}  // namespace kvo::com
