-- make.lua SESSION CLASS [INDEX VALUE]...: a session with one stereo track that holds the plug-in,
-- whose parameters, counted as the host lists them, are set.
local s = assert (create_session (arg[1], "t", 48000), "no session")
local t = s:new_audio_track (2, 2, nil, 1, "T", -1, ARDOUR.TrackMode.Normal, true):front ()
local fx = ARDOUR.LuaAPI.new_plugin (s, arg[2], ARDOUR.PluginType.VST3, "")
assert (not fx:isnil (), "plug-in not found")
assert (t:add_processor_by_index (fx, 0, nil, true) == 0, "plug-in not taken")
for i = 3, #arg, 2 do
  assert (ARDOUR.LuaAPI.set_processor_param (fx, tonumber (arg[i]), tonumber (arg[i + 1])),
    "parameter not set")
end
sleep (1)
s:save_state ("")
close_session ()
quit ()
