// Actions and user-defined field data of an entry.
#include <algorithm>
#include <span>

#include "sim/sdk/SdkValues.h"
#include "sim/sdk/SimSdk.h"

namespace Sim {

using namespace SdkValues;

namespace {

// The chip model's action for an SDK action, if it is of the wanted kind (two numbers or a
// port bitmap).
std::optional<ActionId> actionOfKind( bcm_field_action_t action, bool portAction ) {
   const auto a = actionOf( action );
   if ( !a || isPortAction( *a ) != portAction ) {
      return std::nullopt;
   }
   return a;
}

// The two chip attributes are read as one test, as the library reads them.
bool takesAltUdfForm( const ChipKind& kind ) {
   return kind.attribute( HalyardCentral::ChipAttribute::udfAltFormA ) ||
          kind.attribute( HalyardCentral::ChipAttribute::udfAltFormB );
}

}  // namespace

int SimSdk::bcm_field_action_add( int unit, bcm_field_entry_t entry, bcm_field_action_t action,
                                  U32 param1, U32 param2 ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_action_add, unit, chip ) ) {
      return rc;
   }
   const auto a = actionOfKind( action, false );
   return a ? codeOf( chip->actionIs( entry, *a, param1, param2 ) ) : kParam;
}

int SimSdk::bcm_field_action_get( int unit, bcm_field_entry_t entry, bcm_field_action_t action,
                                  U32* param1, U32* param2 ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_action_get, unit, chip ) ) {
      return rc;
   }
   const auto a = actionOfKind( action, false );
   if ( !a || !param1 || !param2 ) {
      return kParam;
   }
   const auto params = chip->action( entry, *a );
   if ( !params ) {
      return kNotFound;
   }
   *param1 = params->param1;
   *param2 = params->param2;
   return kNone;
}

int SimSdk::bcm_field_action_remove( int unit, bcm_field_entry_t entry,
                                     bcm_field_action_t action ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_action_remove, unit, chip ) ) {
      return rc;
   }
   const auto a = actionOf( action );
   return a ? codeOf( chip->actionDel( entry, *a ) ) : kParam;
}

int SimSdk::bcm_field_action_ports_add( int unit, bcm_field_entry_t entry,
                                        bcm_field_action_t action, bcm_pbmp_t pbmp ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_action_ports_add, unit, chip ) ) {
      return rc;
   }
   const auto a = actionOfKind( action, true );
   return a ? codeOf( chip->actionPortsIs( entry, *a, portBitmapOf( pbmp ) ) ) : kParam;
}

int SimSdk::bcm_field_action_ports_get( int unit, bcm_field_entry_t entry,
                                        bcm_field_action_t action, bcm_pbmp_t* pbmp ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_action_ports_get, unit, chip ) ) {
      return rc;
   }
   const auto a = actionOfKind( action, true );
   if ( !a || !pbmp ) {
      return kParam;
   }
   const auto ports = chip->actionPorts( entry, *a );
   if ( !ports ) {
      return kNotFound;
   }
   *pbmp = pbmpOf( *ports );
   return kNone;
}

// ---- User-defined fields. The data-qualifier pair and the UDF pair differ only in the order
// of their arguments; a chip takes one of them (SimSdk.h, contract 5).

int SimSdk::udfWrite( SdkOp op, bool altForm, int unit, bcm_field_entry_t entry, int id,
                      const U8* data, const U8* mask, U16 length ) {
   Unit* u = nullptr;
   if ( const int rc = begin( op, unit, u ) ) {
      return rc;
   }
   if ( takesAltUdfForm( *u->kind ) != altForm ) {
      return kUnavail;
   }
   if ( id <= 0 || !data || !mask ) {
      return kParam;
   }
   return codeOf( u->chip->udfDataIs( entry, static_cast<UdfId>( id ),
                                      std::span<const U8>( data, length ),
                                      std::span<const U8>( mask, length ) ) );
}

int SimSdk::udfRead( SdkOp op, bool altForm, int unit, bcm_field_entry_t entry, int id,
                     U16 maxLength, U8* data, U8* mask, U16* actualLength ) {
   Unit* u = nullptr;
   if ( const int rc = begin( op, unit, u ) ) {
      return rc;
   }
   if ( takesAltUdfForm( *u->kind ) != altForm ) {
      return kUnavail;
   }
   if ( id <= 0 || !data || !mask || !actualLength ) {
      return kParam;
   }
   const auto v = u->chip->udfData( entry, static_cast<UdfId>( id ) );
   if ( !v ) {
      return kNotFound;
   }
   if ( v->length > maxLength ) {
      return kParam;
   }
   std::copy_n( v->data.begin(), v->length, data );
   std::copy_n( v->mask.begin(), v->length, mask );
   *actualLength = v->length;
   return kNone;
}

int SimSdk::bcm_field_qualify_data( int unit, bcm_field_entry_t entry, int qualId, const U8* data,
                                    const U8* mask, U16 length ) {
   return udfWrite( SdkOp::bcm_field_qualify_data, false, unit, entry, qualId, data, mask, length );
}

int SimSdk::bcm_field_qualify_data_get( int unit, bcm_field_entry_t entry, int qualId,
                                        U16 maxLength, U8* data, U8* mask, U16* actualLength ) {
   return udfRead( SdkOp::bcm_field_qualify_data_get, false, unit, entry, qualId, maxLength, data,
                   mask, actualLength );
}

int SimSdk::bcm_field_qualify_udf( int unit, bcm_field_entry_t entry, int udfId, U16 length,
                                   const U8* data, const U8* mask ) {
   return udfWrite( SdkOp::bcm_field_qualify_udf, true, unit, entry, udfId, data, mask, length );
}

int SimSdk::bcm_field_qualify_udf_get( int unit, bcm_field_entry_t entry, int udfId, U16 maxLength,
                                       U8* data, U8* mask, U16* actualLength ) {
   return udfRead( SdkOp::bcm_field_qualify_udf_get, true, unit, entry, udfId, maxLength, data,
                   mask, actualLength );
}

}  // namespace Sim
