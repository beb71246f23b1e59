kivo_add_test(editor color_bar LINK kivo_editor)
kivo_add_test(editor edit_bar LINK kivo_editor)
