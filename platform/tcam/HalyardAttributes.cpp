#include "platform/tcam/HalyardAttributes.h"

#include <utility>

namespace HalyardCentral {

namespace {

// Never destroyed: the record may be released at exit only after the type
// records it counts itself in, so it is not released at all.
Vesper::Ptr<HalyardAttributes>& slot() {
   static auto* const record = new Vesper::Ptr<HalyardAttributes>( halyardAttributesFactory() );
   return *record;
}

}  // namespace

Vesper::Ptr<const ChipAttributes> HalyardAttributes::chip( const ChipInfo& chip ) const {
   const Vesper::Ptr<const ChipAttributes>* row = chip_.find( chip );
   return row ? *row : nullptr;
}

void HalyardAttributes::chipIs( const ChipInfo& chip, Vesper::Ptr<const ChipAttributes> attrs ) {
   if ( !attrs ) {
      chip_.del( chip );
      return;
   }
   chip_.set( chip, std::move( attrs ) );
}

Vesper::Ptr<const ChipAttributes> HalyardAttributes::chipDel( const ChipInfo& chip ) {
   auto removed = chip_.del( chip );
   return removed ? std::move( *removed ) : nullptr;
}

Vesper::Ptr<HalyardAttributes> halyardAttributesFactory() {
   Vesper::Ptr<HalyardAttributes> attrs( new HalyardAttributes );
   attrs->hasNotificationActiveIs( true );
   return attrs;
}

Vesper::Ptr<HalyardAttributes> halyardAttributes() {
   return slot();
}

void halyardAttributesIs( Vesper::Ptr<HalyardAttributes> attrs ) {
   slot() = attrs ? std::move( attrs ) : halyardAttributesFactory();
}

}  // namespace HalyardCentral
