#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

// A test double of the macOS authorization calls, with the names, types and values of the system's header.
// Calls are recorded and answered as configured by a test.

using OSStatus = int32_t;
using AuthorizationFlags = uint32_t;
using AuthorizationString = const char*;

struct AuthorizationItem {
  AuthorizationString name;
  size_t valueLength;
  void* value;
  uint32_t flags;
};
struct AuthorizationItemSet {
  uint32_t count;
  AuthorizationItem* items;
};
using AuthorizationRights = AuthorizationItemSet;
using AuthorizationEnvironment = AuthorizationItemSet;
using AuthorizationRef = const struct AuthorizationOpaqueRef*;

constexpr OSStatus errAuthorizationSuccess = 0;
constexpr OSStatus errAuthorizationDenied = -60005;
constexpr OSStatus errAuthorizationCanceled = -60006;
constexpr AuthorizationFlags kAuthorizationFlagDefaults = 0;
constexpr AuthorizationFlags kAuthorizationFlagInteractionAllowed = 1;
constexpr AuthorizationFlags kAuthorizationFlagExtendRights = 2;
constexpr AuthorizationFlags kAuthorizationFlagDestroyRights = 8;
constexpr AuthorizationFlags kAuthorizationFlagPreAuthorize = 16;
#define kAuthorizationEmptyEnvironment nullptr

OSStatus AuthorizationCreate(const AuthorizationRights* rights, const AuthorizationEnvironment* environment,
                             AuthorizationFlags flags, AuthorizationRef* authorization);
OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment* environment, AuthorizationFlags flags,
                                 AuthorizationRights** authorizedRights);
OSStatus AuthorizationExecuteWithPrivileges(AuthorizationRef authorization, const char* pathToTool,
                                            AuthorizationFlags options, char* const* arguments, FILE** pipe);
OSStatus AuthorizationFree(AuthorizationRef authorization, AuthorizationFlags flags);

/// The recorded calls of the double, and its answers.
struct AuthorizationDouble {
  std::vector<std::string> calls;  ///< each with its arguments, in order
  OSStatus createStatus = errAuthorizationSuccess;
  OSStatus copyStatus = errAuthorizationSuccess;
  OSStatus executeStatus = errAuthorizationSuccess;

  static AuthorizationDouble& Instance();
};
