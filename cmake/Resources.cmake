# Puts every file of resources/ into the program, as read-only bytes that Resources::builtIn finds by
# its path below resources/. The assembler does the copying: no generated megabytes of C++.

function(brisko_embed_resources target folder)
  file(GLOB_RECURSE files CONFIGURE_DEPENDS RELATIVE ${folder} ${folder}/*)
  list(SORT files)
  set(assembly "  .section .rodata\n")
  set(externs "")
  set(rows "")
  set(index 0)
  set(depends "")
  foreach(file IN LISTS files)
    string(APPEND assembly
      "  .globl brisko_resource_${index}\n  .globl brisko_resource_${index}_end\n  .balign 16\n"
      "brisko_resource_${index}:\n  .incbin \"${folder}/${file}\"\nbrisko_resource_${index}_end:\n  .byte 0\n")
    string(APPEND externs "extern \"C\" const char brisko_resource_${index}[], brisko_resource_${index}_end[];\n")
    string(APPEND rows "    {\"${file}\", brisko_resource_${index}, brisko_resource_${index}_end},\n")
    list(APPEND depends ${folder}/${file})
    math(EXPR index "${index} + 1")
  endforeach()
  string(APPEND assembly "  .section .note.GNU-stack,\"\",@progbits\n")
  set(asm ${CMAKE_CURRENT_BINARY_DIR}/embedded_resources.S)
  set(table ${CMAKE_CURRENT_BINARY_DIR}/embedded_resources.cpp)
  file(CONFIGURE OUTPUT ${asm} CONTENT "${assembly}" @ONLY)
  file(CONFIGURE OUTPUT ${table} CONTENT
"// Generated from resources/ by cmake/Resources.cmake.
#include \"EmbeddedResources.h\"
${externs}
namespace brisko {
namespace {
const EmbeddedResource kTable[] = {
${rows}    {nullptr, nullptr, nullptr}};
}
const EmbeddedResource* embeddedResources() { return kTable; }
}  // namespace brisko
" @ONLY)
  # The target belongs to another folder, which would not see the property without being named.
  set_source_files_properties(${asm} TARGET_DIRECTORY ${target}
                              PROPERTIES OBJECT_DEPENDS "${depends}")
  target_sources(${target} PRIVATE ${asm} ${table})
endfunction()
