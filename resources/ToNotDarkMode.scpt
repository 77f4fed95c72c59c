tell application "System Events"
	tell appearance preferences
		set dark mode to false
	end tell
end tell
