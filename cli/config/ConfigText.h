// The ACL configuration language of halyard-acl: text in the usual switch syntax, read into the
// three records an agent hands the generic ACL layer (Acl::Config, Acl::IntfConfig,
// Acl::ParamConfig), and written back.
//
//   ip access-list NAME | ipv6 access-list NAME | mac access-list NAME
//   ip access-list standard NAME | ipv6 access-list standard NAME
//      [SEQ] permit|deny ...        (cli/README.md gives every form)
//      [SEQ] remark TEXT
//   interface NAME
//      ip|ipv6|mac access-group NAME in|out
//   hardware access-list ...        (the settings of Acl::ParamConfig)
//
// Contract:
//  1. A configuration with any error yields no records at all: parseConfig throws ConfigError,
//     whose diagnostics each name the file and the line ("FILE:LINE: message") and say what is
//     wrong and what was expected. Nothing else escapes from the parser for any input.
//  2. Reading is deterministic: the same text gives equal records, including each rule's
//     unique id, which depends only on the list's type and name and the sequence number. So a
//     rule that stands unchanged in two configurations compares equal in both, and applying
//     the second as a change of the first touches only what differs.
//  3. writeConfig gives text that reads back to records equal to its input (sameConfig), for
//     every configuration that parseConfig produces. Addresses are normalised on reading (the
//     host bits under a prefix are cleared), names of ports and protocols become numbers.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/acl/AclConfig.h"
#include "platform/acl/IntfConfig.h"
#include "platform/acl/ParamConfig.h"
#include "platform/acl/UniqueId.h"
#include "platform/pylon/IntfId.h"
#include "platform/vesper/Types.h"

namespace HalyardCli {

// The configuration of one file: access lists, interface bindings, hardware settings.
struct AclSetup {
   Acl::Config::Ptr config;
   Acl::IntfConfig::Ptr intfConfig;
   Acl::ParamConfig::Ptr paramConfig;
};

// One finding of the parser. `line` is 1-based; 0 for a finding about the whole file.
struct ConfigDiagnostic {
   std::string file;
   U32 line = 0;
   std::string message;

   // "FILE:LINE: message", or "FILE: message" for line 0.
   std::string text() const;
};

// A configuration that does not read. what() is every diagnostic's text, one a line.
class ConfigError : public std::runtime_error {
 public:
   explicit ConfigError( std::vector<ConfigDiagnostic> diagnostics );
   const std::vector<ConfigDiagnostic>& diagnostics() const { return diagnostics_; }

 private:
   std::vector<ConfigDiagnostic> diagnostics_;
};

struct ConfigOptions {
   // Whether the switch has this interface; unset: every well-formed interface name is taken.
   std::function<bool( Pylon::IntfId )> interfaceExists;
};

// Reads a configuration; `fileName` names it in diagnostics. Throws ConfigError.
AclSetup parseConfig( std::string_view text, std::string_view fileName,
                      const ConfigOptions& options = {} );
// Reads the file at `path`; an unreadable file is a ConfigError on line 0.
AclSetup readConfigFile( const std::string& path, const ConfigOptions& options = {} );

// The configuration as text in the language above, lists by type and name, interfaces in
// their natural order.
std::string writeConfig( const AclSetup& setup );

// Whether two setups hold the same lists, rules, bindings and settings.
bool sameConfig( const AclSetup& a, const AclSetup& b );

// The unique id the parser gives the rule `seqNo` of the list (`type`, `aclName`): a hash of
// the three, never empty, with the top bit clear as configuration ids keep it.
Acl::UniqueId ruleUniqueId( Acl::AclType type, std::string_view aclName, U32 seqNo );

}  // namespace HalyardCli
