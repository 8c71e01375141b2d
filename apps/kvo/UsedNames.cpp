#include "apps/kvo/UsedNames.h"

#include "apps/kvo/Terminal.h"
#include "common/text/Suggest.h"
#include "common/values/Ascii.h"
#include "document/page/Messages.h"

namespace kvo {

using page::messages::Quoted;

void UsedNames::Add(const std::vector<uses::Use>& uses) {
  for (const uses::Use& use : uses) ++counts_[uses::Written(use.name)];
}

void UsedNames::Add(const UsedNames& others) {
  for (const auto& [name, count] : others.counts_) counts_[name] += count;
}

void UsedNames::TellUsedNowhere(const std::string& word) const {
  // The names of one group begin alike, which makes none of them likelier.
  const std::size_t group = uses::IsField(uses::NamesMeant(word).front()) ? word.find('.') + 1 : 0;
  std::vector<std::string_view> names;
  for (const auto& [name, count] : counts_)
    if (name.starts_with(std::string_view(word).substr(0, group)))
      names.push_back(std::string_view(name).substr(group));
  const std::string_view nearest = Suggest(std::string_view(word).substr(group), names);
  const page::messages::Quoting kNowhere = {"{} kommt nirgends vor.", "{} is used nowhere."};
  const std::string meant = nearest.empty() ? "" : word.substr(0, group).append(nearest);
  Tell("kvo: " + page::messages::WithSuggestion(kNowhere(word), meant).In(UserLanguage()));
}

void UsedNames::TellOtherCases(const std::string& word) const {
  for (const auto& [name, count] : counts_)
    if (name != word && EqualIgnoringCase(name, word))
      Tell(Say({"kvo: {} kommt auch vor ({}); es unterscheidet sich nur in Groß- und "
                "Kleinschreibung.",
                "kvo: {} is used, too ({}); it differs in upper and lower case alone."},
               {Quoted(name), std::to_string(count)}));
}

}  // namespace kvo
