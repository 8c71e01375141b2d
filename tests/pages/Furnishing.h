// An office and a shop that scripts set up with additional commands:
//   contact-field SQLNAME "Name" TYPE     order-field SQLNAME "Name" TYPE
//   product NUMBER "Name" "Description"   connection open|closed|broken
#pragma once

#include <memory>
#include <span>
#include <string>

#include "tests/forms/FakeRecordset.h"
#include "tests/pages/FakeOffice.h"

namespace kvo {

struct Furnishing {
  FakeTable table;
  std::shared_ptr<FakeConnection> connection = std::make_shared<FakeConnection>();
  std::shared_ptr<FakeOffice> office = std::make_shared<FakeOffice>();

  Furnishing() { office->connection = connection; }

  // Returns false if it is none of these commands.
  bool Command(std::span<const std::string> words) {
    if (words[0] == "contact-field" && words.size() == 4) {
      office->contactFields.push_back({words[1], words[2], std::stoi(words[3])});
    } else if (words[0] == "order-field" && words.size() == 4) {
      office->orderFields.push_back({words[1], words[2], std::stoi(words[3])});
    } else if (words[0] == "product" && words.size() == 4) {
      table.rows.push_back({{"ProductNo", words[1]}, {"Desc1", words[2]}, {"Desc2", words[3]}});
    } else if (words[0] == "connection" && words.size() == 2) {
      connection->state = words[1] == "closed" ? 0 : 1;
      table.gone = words[1] == "broken";
    } else {
      return false;
    }
    return true;
  }
};

}  // namespace kvo
