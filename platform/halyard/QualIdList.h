// A set of field-processor qualifier identifiers: the qualifiers that
// together make up one user-defined field on a chip.
//
// Order of insertion does not matter: the ids are kept sorted and unique,
// so equal sets are equal values. Ordering compares the sorted ids
// lexicographically; hash() is the one-at-a-time hash over the sorted ids,
// each 32 bits least significant byte first.
//
// Text: Value('Halyard::QualIdList', ** {'qualId': [1, 7]})
#pragma once

#include <compare>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace Halyard {

using Pylon::strepToValue;

class QualIdList {
 public:
   QualIdList() = default;
   QualIdList( std::initializer_list<U32> ids );

   void qualIdIs( U32 id );
   bool qualIdHas( U32 id ) const;
   void qualIdDel( U32 id );

   std::size_t size() const { return ids_.size(); }
   bool empty() const { return ids_.empty(); }
   // Rising ids.
   std::vector<U32>::const_iterator begin() const { return ids_.begin(); }
   std::vector<U32>::const_iterator end() const { return ids_.end(); }
   U32 hash() const;

   friend bool operator==( const QualIdList&, const QualIdList& ) = default;
   friend auto operator<=>( const QualIdList&, const QualIdList& ) = default;

 private:
   std::vector<U32> ids_;
};

std::string valueToStrep( const QualIdList& list );
QualIdList parseStrep( std::string_view text, Pylon::ValueType<QualIdList> );
std::ostream& operator<<( std::ostream& os, const QualIdList& list );

}  // namespace Halyard
