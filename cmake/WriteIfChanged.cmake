# write_if_changed(path text): writes a file only when its content changed,
# so that unchanged generated grammars do not trigger a regeneration.
function(write_if_changed path text)
  if(EXISTS "${path}")
    file(READ "${path}" old)
    if(old STREQUAL text)
      return()
    endif()
  endif()
  file(WRITE "${path}" "${text}")
endfunction()
