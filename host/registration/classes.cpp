#include "host/registration/classes.h"

#include "common/values/Ascii.h"
#include "controls/DTCClicktracker.h"
#include "controls/DTCConfig.h"
#include "controls/DTCContact.h"
#include "controls/DTCElement.h"
#include "controls/DTCIf.h"
#include "controls/DTCOrder.h"
#include "controls/DTCPositionList.h"
#include "controls/DTCPrint.h"
#include "controls/DTCProductList.h"
#include "controls/DTCScript.h"
#include "controls/DTCUnsubscriber.h"
#include "controls/DTCViewtracker.h"
#include "pages/propClickGeneral.h"
#include "pages/propContactGeneral.h"
#include "pages/propElementProperties.h"
#include "pages/propGeneralAttributes.h"
#include "pages/propGeneralFormat.h"
#include "pages/propIfGeneral.h"
#include "pages/propOrderGeneral.h"
#include "pages/propPosListDesign.h"
#include "pages/propPrintGeneral.h"
#include "pages/propProdListDesign.h"
#include "pages/propProdListGeneral.h"
#include "pages/propProdListPicker.h"
#include "pages/propUnsubGeneral.h"

namespace kvo {
namespace {

constexpr RegisteredControl kControls[] = {
    // clang-format off
    {DTCPrint::Contract, "{6F1B5C0E-6B0A-4B57-9C55-0F6D1C6A7E01}",
     "{81191E5F-6093-475D-94C5-5D3A193461F1}"},
    {DTCContact::Contract, "{BBA5164F-192A-4168-85B5-1D9488DA3EB8}",
     "{048BE89D-460F-4F09-8481-E0B36799F36D}"},
    {DTCOrder::Contract, "{63E2A8F8-4A52-4F54-B327-05AE9EA0DB80}",
     "{05F26E9C-836F-46BA-BC05-854AF4490602}"},
    {DTCConfig::Contract, "{A6F00881-2DEA-4359-9CDE-D016A4B03D07}",
     "{2261E8A3-51F2-43FD-AAC4-E71A9659DC5E}"},
    {DTCElement::Contract, "{AD6F84A9-F2B3-48BE-BC2A-7A8C3D9F8790}",
     "{D6AB0031-9A51-40CC-8784-F1AF3D3CF0A8}"},
    {DTCScript::Contract, "{BE49BE9A-95F3-47D7-8C3D-D68E76A15576}",
     "{860872F3-2DF6-4D7C-A010-467A7DB99CCA}"},
    {DTCIf::Contract, "{EE7E56F3-446D-4B11-9747-D4159D6E24EF}",
     "{6BC6C750-6F59-442F-B717-D244DAD67370}"},
    {DTCProductList::Contract, "{7EC7917E-6D35-4EDF-A0D7-F9B3EE63ED82}",
     "{BE504FF5-445F-49E0-AD2E-74B369991D6E}"},
    {DTCPositionList::Contract, "{C5EDB45A-D385-4062-AE6A-5560389434CB}",
     "{00ADE24C-9004-4702-A34C-9EF521BF1011}"},
    {DTCClicktracker::Contract, "{71E4A15D-4520-4FA5-B89C-742702D119AC}",
     "{FFE71ABF-02A5-4085-8273-85DE589917D0}"},
    {DTCViewtracker::Contract, "{07BB82DA-BC7E-4353-B288-57CC3CADA656}",
     "{A5587B10-9ED4-44BE-886A-A16E0F4A337B}"},
    {DTCUnsubscriber::Contract, "{061F636A-57EC-4403-AC56-604393B010E8}",
     "{7C736124-6941-40A6-9ED2-A94907A235FA}"},
    // clang-format on
};

template <class Page>
std::unique_ptr<PropertyPage> Create() {
  return std::make_unique<Page>();
}

// clang-format off
#define KVO_PAGE(Page, classId) {#Page, Create<Page>, classId}

constexpr RegisteredPage kPages[] = {
    KVO_PAGE(propPrintGeneral,      "{2F2C2DB2-E3D7-4B72-9AFB-59B73D2ECF8F}"),
    KVO_PAGE(propGeneralFormat,     "{47AB8269-82C0-4347-B8FF-9297004DB169}"),
    KVO_PAGE(propContactGeneral,    "{0B4915E5-167B-459B-9E59-A34B93D121A1}"),
    KVO_PAGE(propOrderGeneral,      "{6C56FBA1-DC09-400D-9B04-BD48C6E0D8F7}"),
    KVO_PAGE(propElementProperties, "{325B556F-2A87-4FB2-9BCF-C9D27AAB6BF6}"),
    KVO_PAGE(propGeneralAttributes, "{5E64CB28-4470-4D01-9B50-AD0F50311125}"),
    KVO_PAGE(propIfGeneral,         "{B4D1E142-F86E-46AA-A68D-556874F17D48}"),
    KVO_PAGE(propProdListGeneral,   "{FFC116BC-EBA0-40BD-9CD0-BE4C842D8C47}"),
    KVO_PAGE(propProdListDesign,    "{2F9A6323-6F09-45A4-994D-F783FDD38CBF}"),
    KVO_PAGE(propProdListPicker,    "{372F5931-F937-4ADF-A294-2D97371C3325}"),
    KVO_PAGE(propPosListDesign,     "{C46F3DC0-F351-4D35-B38A-DD7831F858E1}"),
    KVO_PAGE(propClickGeneral,      "{35D7E72F-D6D0-40CD-9A8D-17B36A2A02A7}"),
    KVO_PAGE(propUnsubGeneral,      "{82D18FEA-8E7C-4CC3-A7DA-AAC41BD16ADD}"),
};
// clang-format on

constexpr std::string_view kProgId = "progid:";
constexpr std::string_view kClsid = "clsid:";

bool StartsWith(std::string_view text, std::string_view prefix) {
  return EqualIgnoringCase(text.substr(0, prefix.size()), prefix);
}

// Returns the class name in "progid:KVOPDesignObjects.NAME"; empty for another library.
std::string_view ClassNameOf(std::string_view classId) {
  if (!StartsWith(classId, kProgId)) return {};
  classId.remove_prefix(kProgId.size());
  if (!StartsWith(classId, kLibraryName)) return {};
  classId.remove_prefix(kLibraryName.size());
  return classId.starts_with('.') ? classId.substr(1) : std::string_view();
}

std::string_view WithoutBraces(std::string_view guid) {
  if (guid.starts_with('{')) guid.remove_prefix(1);
  if (guid.ends_with('}')) guid.remove_suffix(1);
  return guid;
}

}  // namespace

std::span<const RegisteredControl> RegisteredControls() { return kControls; }

const RegisteredControl* FindControlByName(std::string_view className) {
  for (const RegisteredControl& control : kControls)
    if (control.contract().name == className) return &control;
  return nullptr;
}

const RegisteredControl* FindControlByClassId(std::string_view classId) {
  const std::string_view className = ClassNameOf(classId);
  for (const RegisteredControl& control : kControls) {
    if (!className.empty() && EqualIgnoringCase(control.contract().name, className))
      return &control;
    if (StartsWith(classId, kClsid) &&
        EqualIgnoringCase(WithoutBraces(classId.substr(kClsid.size())),
                          WithoutBraces(control.classId)))
      return &control;
  }
  return nullptr;
}

std::span<const RegisteredPage> RegisteredPages() { return kPages; }

const RegisteredPage* FindPage(std::string_view className) {
  for (const RegisteredPage& page : kPages)
    if (page.name == className) return &page;
  return nullptr;
}

std::unique_ptr<PropertyPage> CreatePage(std::string_view className) {
  const RegisteredPage* page = FindPage(className);
  return page == nullptr ? nullptr : page->create();
}

bool IsOurProgId(std::string_view classId) {
  if (!StartsWith(classId, kProgId)) return false;
  classId.remove_prefix(kProgId.size());
  if (!StartsWith(classId, kLibraryName)) return false;
  classId.remove_prefix(kLibraryName.size());
  return classId.empty() || classId.starts_with('.');
}

}  // namespace kvo
