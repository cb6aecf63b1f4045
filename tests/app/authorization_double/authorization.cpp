#include <Security/Authorization.h>

struct AuthorizationOpaqueRef {};

namespace {

const AuthorizationOpaqueRef g_reference;

std::string TextOf(const AuthorizationItemSet* pItems) {
  if (!pItems) return "null";
  std::string strText;
  for (uint32_t i = 0; i < pItems->count; ++i) {
    const AuthorizationItem& item = pItems->items[i];
    strText += std::string(i == 0 ? "" : " ") + item.name + ":" + std::to_string(item.valueLength) + ":" +
               (item.value ? "value" : "null") + ":" + std::to_string(item.flags);
  }
  return strText;
}

std::string TextOf(AuthorizationRef reference) {
  return reference == &g_reference ? "the reference" : "another reference";
}

OSStatus Record(const std::string& strCall, OSStatus nStatus) {
  AuthorizationDouble::Instance().calls.push_back(strCall);
  return nStatus;
}

}  // namespace

AuthorizationDouble& AuthorizationDouble::Instance() {
  static AuthorizationDouble instance;
  return instance;
}

OSStatus AuthorizationCreate(const AuthorizationRights* rights, const AuthorizationEnvironment* environment,
                             AuthorizationFlags flags, AuthorizationRef* authorization) {
  const OSStatus nStatus = AuthorizationDouble::Instance().createStatus;
  if (nStatus == errAuthorizationSuccess) *authorization = &g_reference;
  return Record("create " + TextOf(rights) + ", " + TextOf(environment) + ", " + std::to_string(flags),
                nStatus);
}

OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment* environment, AuthorizationFlags flags,
                                 AuthorizationRights** authorizedRights) {
  return Record("copy " + TextOf(authorization) + ", " + TextOf(rights) + ", " + TextOf(environment) + ", " +
                    std::to_string(flags) + ", " + (authorizedRights ? "wanted" : "null"),
                AuthorizationDouble::Instance().copyStatus);
}

OSStatus AuthorizationExecuteWithPrivileges(AuthorizationRef authorization, const char* pathToTool,
                                            AuthorizationFlags options, char* const* arguments, FILE** pipe) {
  std::string strArguments;
  for (; *arguments; ++arguments) strArguments += std::string(*arguments) + " ";
  return Record("execute " + TextOf(authorization) + ", " + pathToTool + ", " + std::to_string(options) +
                    ", " + strArguments + "null, " + (pipe ? "pipe" : "null"),
                AuthorizationDouble::Instance().executeStatus);
}

OSStatus AuthorizationFree(AuthorizationRef authorization, AuthorizationFlags flags) {
  return Record("free " + TextOf(authorization) + ", " + std::to_string(flags), errAuthorizationSuccess);
}
