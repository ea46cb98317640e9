# Whatever prefix is chosen while installing, what the bus, the session and polkit start lies there.
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${build}" --component places
    --prefix "${prefix}" COMMAND_ERROR_IS_FATAL ANY)
foreach(line IN ITEMS
        "share/dbus-1/services/com.brindle.murn.service;Exec=${prefix}/bin/murn"
        "share/dbus-1/services/com.brindle.murn.Library.service;Exec=${prefix}/libexec/murn-library"
        "lib/systemd/user/murn-index.service;ExecStart=${prefix}/libexec/murn-library"
        "share/polkit-1/actions/com.brindle.murn.policy;>${prefix}/libexec/murn-attribute-writer<")
    list(GET line 0 file)
    list(GET line 1 expected)
    file(READ "${prefix}/${file}" content)
    string(FIND "${content}" "${expected}" at)
    if(at EQUAL -1)
        message(SEND_ERROR "${file} does not say ${expected}")
    endif()
endforeach()
file(REMOVE_RECURSE "${prefix}")
