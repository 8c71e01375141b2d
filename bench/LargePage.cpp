#include "bench/LargePage.h"

#include <iterator>
#include <string_view>

namespace kvo::bench {

std::string LargePage() {
  constexpr std::size_t kControls = 2000;
  constexpr std::string_view kControl[] = {
      R"(DTCPrint"><param name="value" value="#customer.BonusPoints# / 100"><param name="format" value="#,##0.00">)",
      R"(DTCContact"><param name="field" value="LastName">)",
      R"(DTCIf"><param name="test" value="%'#customer.LastName#'!=''&amp;amp;&amp;amp;#customer.OrderCount#&amp;gt;3%"><param name="on-true" value="&lt;b&gt;&lt;kv:contact field=&quot;FirstName&quot;/&gt;&lt;/b&gt;"><param name="on-false" value="Hallo">)",
      R"(DTCClicktracker"><param name="href" value="https://shop.example/?nr=#order.OrderID#"><param name="html-content" value="Zum Shop">)"};
  const std::string text(900, 'x');
  std::string page = "<!DOCTYPE html><html><head><meta charset=\"utf-8\"></head><body><table>\r\n";
  for (std::size_t at = 0; at < kControls; ++at)
    page.append("<tr><td style=\"color:#333333\">")
        .append(text)
        .append("<object classid=\"progid:KVOPDesignObjects.")
        .append(kControl[at % std::size(kControl)])
        .append("</object></td></tr>\r\n");
  return page + "</table></body></html>\r\n";
}

}  // namespace kvo::bench
