# SPDX-License-Identifier: GPL-3.0-or-later
# The key that signs application descriptions, and the public half that the library checks them by.
set(KESTRUNE_SIGNING_KEY ${PROJECT_SOURCE_DIR}/resources/keys/development.pem CACHE FILEPATH
  "Private key (PEM, RSA, 2048 bits) that signs the application description")

find_program(KESTRUNE_OPENSSL openssl REQUIRED)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${KESTRUNE_SIGNING_KEY})
execute_process(
  COMMAND ${KESTRUNE_OPENSSL} rsa -in ${KESTRUNE_SIGNING_KEY} -RSAPublicKey_out
  OUTPUT_VARIABLE KESTRUNE_PUBLIC_KEY
  ERROR_VARIABLE signing_error
  RESULT_VARIABLE signing_result)
if(NOT signing_result EQUAL 0)
  message(FATAL_ERROR "KESTRUNE_SIGNING_KEY ${KESTRUNE_SIGNING_KEY}: ${signing_error}")
endif()

# kestrune_sign_description(SOURCE TARGET): signs SOURCE into the file TARGET when it is built.
function(kestrune_sign_description source target)
  set(script ${PROJECT_SOURCE_DIR}/tools/resources/sign-description)
  add_custom_command(
    OUTPUT ${target}
    COMMAND ${script} ${KESTRUNE_SIGNING_KEY} ${source} ${target}
    DEPENDS ${script} ${KESTRUNE_SIGNING_KEY} ${source}
    VERBATIM)
endfunction()
