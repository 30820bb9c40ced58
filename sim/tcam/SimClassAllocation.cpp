// The class compression tables: values and destination prefixes bound to classes.
#include "sim/tcam/SimTcamGroupManager.h"
#include "sim/tcam/TcamUnit.h"

namespace Sim {

namespace {

U32 exactLimit( const ClassTableLimits& limits, ExactClassTable t ) {
   switch ( t ) {
      case ExactClassTable::EtherType:
         return limits.etherType;
      case ExactClassTable::IpProtocol:
         return limits.ipProtocol;
      case ExactClassTable::L4SrcPort:
         return limits.l4SrcPort;
      case ExactClassTable::L4DstPort:
         return limits.l4DstPort;
   }
   return 0;
}

// The one rule of every table: a value keeps the class it was first bound to, and a new value
// needs room. `bound` is the class the value has now, if any.
template <class Bind>
bool bindOnce( std::optional<U64> bound, U64 cls, U32& bindings, U32 limit, Bind&& bind ) {
   if ( bound ) {
      return *bound == cls;
   }
   if ( bindings >= limit ) {
      return false;
   }
   bind();
   ++bindings;
   return true;
}

bool bindExact( TcamUnit* u, ExactClassTable t, U16 value, U8 classId ) {
   if ( !u ) {
      return false;
   }
   ClassTables& tables = u->chip().classTables();
   const std::optional<U32> bound = tables.exactClass( t, value );
   return bindOnce( bound ? std::optional<U64>( *bound ) : std::nullopt, classId,
                    u->exactClassBindings()[static_cast<std::size_t>( t )],
                    exactLimit( u->limits().classTables, t ),
                    [&] { tables.exactClassIs( t, value, classId ); } );
}

}  // namespace

bool SimTcamGroupManager::allocateEtherTypeClassId( U32 unit, U16 etherType, U8 classId ) {
   return bindExact( tcamUnit( unit ), ExactClassTable::EtherType, etherType, classId );
}

bool SimTcamGroupManager::allocateIpProtocolClassId( U32 unit, U16 ipProtocol, U8 classId ) {
   return bindExact( tcamUnit( unit ), ExactClassTable::IpProtocol, ipProtocol, classId );
}

bool SimTcamGroupManager::allocateL4SrcPortClassId( U32 unit, U16 port, U8 classId ) {
   return bindExact( tcamUnit( unit ), ExactClassTable::L4SrcPort, port, classId );
}

bool SimTcamGroupManager::allocateL4DstPortClassId( U32 unit, U16 port, U8 classId ) {
   return bindExact( tcamUnit( unit ), ExactClassTable::L4DstPort, port, classId );
}

bool SimTcamGroupManager::allocateDstIpClassId( U32 unit, const Pylon::IpAddrWithFullMask& prefix,
                                                U64 shiftedClassId ) {
   TcamUnit* u = tcamUnit( unit );
   if ( !u ) {
      return false;
   }
   ClassTables& tables = u->chip().classTables();
   const U32 addr = prefix.address().value();
   const U32 mask = prefix.mask();
   return bindOnce( tables.dstIp4Class( addr, mask ), shiftedClassId, u->dstIpClassBindings(),
                    u->limits().classTables.dstIp,
                    [&] { tables.dstIp4ClassIs( addr, mask, shiftedClassId ); } );
}

bool SimTcamGroupManager::allocateDstIp6ClassId( U32 unit, const Pylon::Ip6AddrWithFullMask& prefix,
                                                 U64 shiftedClassId ) {
   TcamUnit* u = tcamUnit( unit );
   if ( !u ) {
      return false;
   }
   ClassTables& tables = u->chip().classTables();
   const Ip6Addr addr = prefix.address().bytes();
   const Ip6Addr mask = prefix.mask().bytes();
   return bindOnce( tables.dstIp6Class( addr, mask ), shiftedClassId, u->dstIp6ClassBindings(),
                    u->limits().classTables.dstIp6,
                    [&] { tables.dstIp6ClassIs( addr, mask, shiftedClassId ); } );
}

}  // namespace Sim
