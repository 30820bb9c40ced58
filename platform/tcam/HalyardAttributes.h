// The platform's attributes: the chip table and the platform-wide flags that
// the ACL back-end reads, held in one process-wide record.
//
// halyardAttributes() answers the record in force; it is never null. The
// platform owner (the agent's central part, or the simulation) builds its own
// with halyardAttributesFactory(), fills it and installs it with
// halyardAttributesIs() before the back-end starts; until then, and after
// halyardAttributesIs( nullptr ), an empty record stands, whose chip table
// has no row at all.
//
// `chip` maps a ChipInfo to its row, Ptr<const ChipAttributes>; a missing row
// reads as null. `egressFilterPerPort` tells bring-up to turn the egress
// filter on for each fabric port of a unit.
//
// Threads: install before other threads look; the record itself is used on
// the activity thread.
#pragma once

#include "platform/tcam/ChipAttributes.h"
#include "platform/tcam/ChipInfo.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Ptr.h"

namespace HalyardCentral {

class HalyardAttributes : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "HalyardCentral::HalyardAttributes" )

 public:
   using ChipTable = Vesper::HashMap2018<ChipInfo, Vesper::Ptr<const ChipAttributes> >;

   // The row of `chip`, or null.
   Vesper::Ptr<const ChipAttributes> chip( const ChipInfo& chip ) const;
   const ChipTable& chip() const { return chip_; }
   bool chipHas( const ChipInfo& chip ) const { return chip_.has( chip ); }
   // A null row deletes the member.
   void chipIs( const ChipInfo& chip, Vesper::Ptr<const ChipAttributes> attrs );
   Vesper::Ptr<const ChipAttributes> chipDel( const ChipInfo& chip );

   bool egressFilterPerPort() const { return egressFilterPerPort_; }
   void egressFilterPerPortIs( bool value ) { egressFilterPerPort_ = value; }

 private:
   friend Vesper::Ptr<HalyardAttributes> halyardAttributesFactory();
   HalyardAttributes() = default;

   ChipTable chip_;
   bool egressFilterPerPort_ = false;
};

// A new, empty record with notifications on.
Vesper::Ptr<HalyardAttributes> halyardAttributesFactory();

// The record in force; never null.
Vesper::Ptr<HalyardAttributes> halyardAttributes();
// Installs `attrs` as the record in force; null installs a new empty one.
void halyardAttributesIs( Vesper::Ptr<HalyardAttributes> attrs );

}  // namespace HalyardCentral
