// The payload matches of one rule: for each user-defined field the rule
// holds, its qualifier ids and what it matches. Teardown walks it to give
// the fields back.
//
// A value type whose only content is the collection `udfData`. It prints,
// but it has no constructor from text: strepToValue stops the process on
// the assertion "!\"No String constructor for AclRuleUdfData - has collection\"".
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/halyard/QualIdList.h"
#include "platform/halyard/UdfData.h"
#include "platform/pylon/ValueText.h"

namespace Halyard {

class AclRuleUdfData {
 public:
   using Map = std::map<QualIdList, UdfData>;

   // The member, or the all-zero UdfData when absent.
   UdfData udfData( const QualIdList& list ) const;
   bool udfDataHas( const QualIdList& list ) const { return udfData_.contains( list ); }
   // Adds or overwrites.
   void udfDataIs( const QualIdList& list, const UdfData& data ) { udfData_[list] = data; }
   // Removes the member and returns it; the all-zero UdfData when absent.
   UdfData udfDataDel( const QualIdList& list );
   void udfDataDelAll() { udfData_.clear(); }

   std::size_t size() const { return udfData_.size(); }
   // Rising QualIdList.
   Map::const_iterator begin() const { return udfData_.begin(); }
   Map::const_iterator end() const { return udfData_.end(); }

   friend bool operator==( const AclRuleUdfData&, const AclRuleUdfData& ) = default;

 private:
   Map udfData_;
};

// Value('Halyard::AclRuleUdfData', ** {'udfData': {<QualIdList>: <UdfData>, ...}})
std::string valueToStrep( const AclRuleUdfData& data );
[[noreturn]] AclRuleUdfData parseStrep( std::string_view text, Pylon::ValueType<AclRuleUdfData> );
std::ostream& operator<<( std::ostream& os, const AclRuleUdfData& data );

}  // namespace Halyard
