# Copies the tests into a folder of the build tree and installs the packages that they need there.
#   cmake -D source=... -D workplace=... -D npm=... -P packages.cmake
file(GLOB tests ${source}/*.mjs)
file(COPY ${tests} ${source}/package.json ${source}/package-lock.json DESTINATION ${workplace})
execute_process(COMMAND ${npm} ci --ignore-scripts --no-audit --no-fund --prefer-offline --silent
    WORKING_DIRECTORY ${workplace} COMMAND_ERROR_IS_FATAL ANY)
