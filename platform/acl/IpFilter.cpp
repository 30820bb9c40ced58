#include "platform/acl/IpFilter.h"

#include "platform/vesper/Exception.h"

namespace Acl {

void IpFilterBase::vniIs( S64 vni, U32 mask ) {
   if ( vni < 0 || vni > maxVni ) {
      throw Vesper::RangeException( "IpFilterBase::vni < 0 or > 16777215 not allowed" );
   }
   vni_ = static_cast<U32>( vni );
   vniMask_ = mask;
   matchVni_ = true;
}

void IpFilterBase::vniDel() {
   vni_ = 0;
   vniMask_ = 0;
   matchVni_ = false;
}

void IpFilterBase::tniIs( S64 tni, U32 mask ) {
   if ( tni < 0 || tni > maxTni ) {
      throw Vesper::RangeException( "IpFilterBase::tni < 0 or > 16777215 not allowed" );
   }
   tni_ = static_cast<U32>( tni );
   tniMask_ = mask;
   matchTni_ = true;
}

void IpFilterBase::tniDel() {
   tni_ = 0;
   tniMask_ = 0;
   matchTni_ = false;
}

void IpFilter::dscpIs( S64 dscp ) {
   if ( dscp < 0 || dscp > maxDscp ) {
      throw Vesper::RangeException( "IpFilter::dscp > 63 not allowed" );
   }
   dscp_ = static_cast<U8>( dscp );
   matchDscp_ = true;
}

void IpFilter::dscpDel() {
   dscp_ = 0;
   matchDscp_ = false;
}

Pylon::Ip6AddrWithMask Ip6Filter::prefixForm( const Pylon::Ip6AddrWithFullMask& full ) {
   Pylon::Ip6PrefixLen len = full.prefixLen();
   return Pylon::Ip6AddrWithMask( full.address(), len.isInvalid() ? Pylon::Ip6PrefixLen() : len );
}

}  // namespace Acl
