# SPDX-License-Identifier: MIT
# Where the services are that devices report to, and the resolvers that names may be asked of. None of the defaults
# exists: whoever deploys devices sets their own.

foreach(service crash trace)
    string(TOUPPER ${service} SERVICE)
    set(VEXA_${SERVICE}_URL_PRODUCTION https://${service}.vexa.example CACHE STRING "${service} service: base URL")
    set(VEXA_${SERVICE}_URL_STAGING https://${service}.staging.vexa.example CACHE STRING "the same for staging")
    set(VEXA_${SERVICE}_URL_DEVELOPMENT https://${service}.dev.vexa.example CACHE STRING "the same for development")
endforeach()
set(VEXA_DOH_URL_1 https://dns.first-resolver.example/dns-query CACHE STRING "first DNS-over-HTTPS resolver")
set(VEXA_DOH_URL_2 https://dns.second-resolver.example/dns-query CACHE STRING "second DNS-over-HTTPS resolver")

configure_file(${PROJECT_SOURCE_DIR}/core/deployment.h.in ${PROJECT_BINARY_DIR}/generated/core/deployment.h @ONLY)
